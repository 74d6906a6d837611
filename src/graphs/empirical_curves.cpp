#include "graphs/empirical_curves.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include "graphs/empirical_interval.h"

namespace tessaly {

namespace {

/// The y-axis of a picture, and how far inside its ends values are held: in hundredths of its length.
class HeldInside {
 public:
  explicit HeldInside(const YAxisSettings& y)
      : low_(static_cast<double>(y.ShownMin)),
        high_(static_cast<double>(y.ShownMax)),
        hundredth_((high_ - low_) * 0.01) {}

  float Value(double value) const { return Held(value, 1, 1); }
  float Upper(double value) const {
    return static_cast<float>(value > high_ + hundredth_ / 2 ? high_ - hundredth_ / 2
                                                             : std::max(value, low_ + 1.5 * hundredth_));
  }
  float Lower(double value) const { return Held(value, 0.5, 1.5); }

 private:
  float Held(double value, double below, double above) const {
    return static_cast<float>(std::max(std::min(value, high_ - above * hundredth_), low_ + below * hundredth_));
  }

  double low_;
  double high_;
  double hundredth_;
};

/// Turns bins of scores into points.
class ScoreBins {
 public:
  ScoreBins(const HeldInside& held, const CurveTable& model)
      : held_(held), model_(model), grid_(model.Column(CurveTable::kMeasure)) {}

  void Add(const BinCount& row, float measure) {
    count_ += row.Count;
    score_ += row.ScoreSum;
    measure_ += row.Count * static_cast<double>(measure);
    variance_ += row.Count * ModelAt(measure, model_.Information());
  }

  void Close() {
    if (count_ == 0) return;
    constexpr double kTwoSided95 = 1.96;
    EmpiricalPoint point;
    point.X = static_cast<float>(measure_ / count_);
    point.Mean = held_.Value(score_ / count_);
    const double expected = ModelAt(point.X, model_.Expected());
    const double halfWidth = kTwoSided95 * std::sqrt(variance_) / count_;
    point.Upper = held_.Upper(expected + halfWidth);
    point.Lower = held_.Lower(expected - halfWidth);
    points_.push_back(point);
    count_ = score_ = measure_ = variance_ = 0;
  }

  std::int32_t Finished() const { return static_cast<std::int32_t>(points_.size()); }
  std::vector<EmpiricalPoint> Points() && { return std::move(points_); }

 private:
  double ModelAt(float measure, std::int32_t column) const {
    return static_cast<double>(model_.At(NearestGridRow(measure, grid_), column));
  }

  const HeldInside& held_;
  const CurveTable& model_;
  std::span<const float> grid_;
  double count_ = 0;
  double score_ = 0;
  double measure_ = 0;
  double variance_ = 0;
  std::vector<EmpiricalPoint> points_;
};

/// The rows of one category, read bin by bin.
struct CategoryReader {
  std::span<const BinCount> Left;

  /// Takes the rows up to `edge` away; adds their measures to `measures` and gives their number.
  double Take(const EmpiricalData& data, float edge, double& measures) {
    double count = 0;
    while (!Left.empty() && data.MeasureOf(Left.front().Bin) <= edge) {
      count += Left.front().Count;
      measures += Left.front().Count * static_cast<double>(data.MeasureOf(Left.front().Bin));
      Left = Left.subspan(1);
    }
    return count;
  }
};

/// The lowest measure that is left, or nothing.
std::optional<float> LowestLeft(const std::vector<CategoryReader>& readers, const EmpiricalData& data) {
  std::optional<std::int32_t> lowest;
  for (const CategoryReader& reader : readers)
    if (!reader.Left.empty() && (!lowest || reader.Left.front().Bin < *lowest)) lowest = reader.Left.front().Bin;
  if (!lowest) return {};
  return data.MeasureOf(*lowest);
}

}  // namespace

std::vector<EmpiricalPoint> EmpiricalCurve(const EmpiricalRequest& request, const CurveTable& model) {
  const HeldInside held(request.Y);
  BinEdges edges(request.Width, request.Data.Range());
  ScoreBins bins(held, model);
  for (const BinCount& row : request.Data.ScoreRows(request.Scale)) {
    const float measure = request.Data.MeasureOf(row.Bin);
    if (measure > edges.Edge() && bins.Finished() < request.MostPoints) {
      bins.Close();
      edges.Reach(measure);
    }
    bins.Add(row, measure);
  }
  bins.Close();
  return std::move(bins).Points();
}

EmpiricalShares EmpiricalCategoryCurves(const EmpiricalRequest& request, std::int32_t top) {
  EmpiricalShares shares;
  if (top <= 0) return shares;
  const HeldInside held(request.Y);
  const auto categories = static_cast<std::size_t>(top) + 1;
  shares.Share.resize(categories);
  std::vector<CategoryReader> readers;
  for (std::int32_t k = 0; k <= top; ++k) readers.push_back({request.Data.CategoryRows(request.Scale, k)});
  std::vector<double> counts(categories);
  BinEdges edges(request.Width, request.Data.Range());
  while (const std::optional<float> lowest = LowestLeft(readers, request.Data)) {
    edges.Reach(*lowest);
    const bool last = static_cast<std::int32_t>(shares.X.size()) >= request.MostPoints;
    const float edge = last ? std::numeric_limits<float>::infinity() : edges.Edge();
    double total = 0;
    double measures = 0;
    for (std::size_t k = 0; k < categories; ++k) total += counts[k] = readers[k].Take(request.Data, edge, measures);
    shares.X.push_back(static_cast<float>(measures / total));
    for (std::size_t k = 0; k < categories; ++k) shares.Share[k].push_back(held.Value(counts[k] / total));
  }
  return shares;
}

}  // namespace tessaly
