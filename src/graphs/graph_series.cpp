#include "graphs/graph_series.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "graphs/empirical_curves.h"
#include "graphs/smoothing_spline.h"

namespace tessaly {

namespace {

constexpr std::int32_t kMostSmoothed = 10;

using SeriesRole = SeriesRole;

/// Collects the series of one picture.
class SeriesBuilder {
 public:
  SeriesBuilder(const SeriesSource& source, const CurveRequest& request)
      : source_(source),
        table_(source.Table),
        top_(source.Scale.TopCategory),
        kind_(request.Kind),
        show_(request.Switches),
        smoothing_(std::clamp(request.Smoothing, 0, kMostSmoothed)) {}

  std::vector<Series> Build() && {
    if (MostPoints() == 0) return {};
    switch (kind_) {
      case GraphKind::CategoryProbability:
        if (show_.ShowModel) AddCategoryProbabilities();
        if (show_.ShowEmpirical && source_.Data != nullptr) AddEmpiricalCategories();
        break;
      case GraphKind::ExpectedScore:
        if (show_.ShowModel) AddModel("Expected score ogive: Model ICC", table_.Expected());
        if (ShowsData()) AddEmpiricalScores();
        if (show_.ShowZones) AddZones();
        break;
      case GraphKind::CumulativeProbability:
        AddCumulativeProbabilities();
        AddHalfLine();
        break;
      case GraphKind::ItemInformation:
        AddModel("Item information function", table_.Information());
        break;
      case GraphKind::CategoryInformation:
        for (std::int32_t k = 0; k <= top_; ++k)
          AddModel("Category information function for: " + Label(k), table_.CategoryInformation(k), k);
        break;
      case GraphKind::ConditionalProbability:
        for (std::int32_t k = 0; k < top_; ++k)
          AddModel("Conditional probability: " + Label(k) + " and " + Label(k + 1), table_.Conditional(k), k + 1);
        AddHalfLine();
        break;
    }
    return std::move(series_);
  }

 private:
  std::string Label(std::int32_t k) const { return source_.Scale.CategoryLabel(k); }

  bool ShowsData() const {
    const bool bands = kind_ == GraphKind::ExpectedScore && show_.ShowConfidence;
    return source_.Data != nullptr && (show_.ShowEmpirical || bands);
  }

  /// Points of the longest series of the picture.
  std::int32_t MostPoints() const {
    const bool switched = kind_ == GraphKind::CategoryProbability || kind_ == GraphKind::ExpectedScore;
    if (!switched) return table_.Rows();
    std::int32_t most = 0;
    if (show_.ShowModel) most = table_.Rows();
    if (ShowsData()) most = std::max(most, source_.Data->LongestScoreList());
    if (kind_ == GraphKind::ExpectedScore && show_.ShowZones) most = std::max(most, 4 * top_);
    return most;
  }

  Series& Add(SeriesRole role, std::string name, std::optional<std::int32_t> category = {}) {
    Series& series = series_.emplace_back();
    series.Role = role;
    series.Name = std::move(name);
    series.Category = category;
    return series;
  }

  Series& AddModel(std::string name, std::int32_t column, std::optional<std::int32_t> category = {}) {
    Series& series = Add(SeriesRole::Model, std::move(name), category);
    series.Points.resize(static_cast<std::size_t>(table_.Rows()));
    for (std::int32_t row = 1; row <= table_.Rows(); ++row) {
      const float y = table_.At(row, column);
      if (y >= 0)
        series.Points[static_cast<std::size_t>(row - 1)] = CurvePoint{table_.At(row, CurveTable::kMeasure), y};
    }
    while (!series.Points.empty() && !series.Points.back()) series.Points.pop_back();
    return series;
  }

  void AddCategoryProbabilities() {
    for (std::int32_t k = 0; k <= top_; ++k) AddModel("Category probability: " + Label(k), table_.Probability(k), k);
  }

  void AddCumulativeProbabilities() {
    for (std::int32_t k = 0; k < top_; ++k) {
      const std::int32_t named = show_.Flip ? k + 1 : k;
      Series& series = AddModel("Cumulative probabilities: " + Label(named), table_.Cumulative(k), named);
      if (!show_.Flip) continue;
      for (std::optional<CurvePoint>& point : series.Points)
        if (point) point->Y = 1 - point->Y;
    }
  }

  void AddHalfLine() {
    Add(SeriesRole::Guide, "0.5 Probability line").Points = {CurvePoint{static_cast<float>(source_.X.FullMin), 0.5F},
                                                             CurvePoint{static_cast<float>(source_.X.FullMax), 0.5F}};
  }

  /// Where the expected score passes the half points between categories: down to the measure, over to the score.
  void AddZones() {
    Series& series = Add(SeriesRole::Guide, "Expected 0.5 zones");
    const auto bottom = static_cast<float>(source_.Scale.BottomCategory);
    for (std::int32_t k = 1; k <= top_; ++k) {
      const float y = static_cast<float>(k) - 0.5F + bottom;
      const float x = table_.At(NearestGridRow(y, table_.Column(table_.Expected())), CurveTable::kMeasure);
      if (k > 1) series.Points.emplace_back();
      series.Points.insert(series.Points.end(), {CurvePoint{static_cast<float>(source_.X.SliderMin), y},
                                                 CurvePoint{x, y}, CurvePoint{x, bottom}});
    }
  }

  EmpiricalRequest Gathered() const {
    return {*source_.Data, source_.Place, source_.Interval, source_.Y, MostPoints()};
  }

  void AddEmpirical(SeriesRole role, std::string name, std::vector<CurvePoint> points,
                    std::optional<std::int32_t> category = {}) {
    Series& series = Add(role, std::move(name), category);
    series.Smoothed = smoothing_ > 0;
    if (series.Smoothed) points = SmoothingSpline(points, smoothing_, source_.Unit).Sampled(MostPoints());
    series.Points.assign(points.begin(), points.end());
  }

  void AddEmpiricalCategories() {
    const EmpiricalShares shares = EmpiricalCategoryCurves(Gathered(), top_);
    for (std::size_t k = 0; k < shares.Share.size(); ++k) {
      std::vector<CurvePoint> points;
      for (std::size_t at = 0; at < shares.X.size(); ++at) points.push_back({shares.X[at], shares.Share[k][at]});
      const auto category = static_cast<std::int32_t>(k);
      AddEmpirical(SeriesRole::Empirical, "Scored category observed: " + Label(category), std::move(points), category);
    }
  }

  void AddEmpiricalScores() {
    const std::vector<EmpiricalPoint> gathered = EmpiricalCurve(Gathered(), table_);
    const auto add = [&](SeriesRole role, std::string name, float EmpiricalPoint::*value) {
      std::vector<CurvePoint> points;
      for (const EmpiricalPoint& point : gathered) points.push_back({point.X, point.*value});
      AddEmpirical(role, std::move(name), std::move(points));
    };
    if (show_.ShowEmpirical) add(SeriesRole::Empirical, "Empirical ICC", &EmpiricalPoint::Mean);
    if (!show_.ShowConfidence) return;
    add(SeriesRole::UpperBound, "Upper 95% 2-sided confidence interval", &EmpiricalPoint::Upper);
    add(SeriesRole::LowerBound, "Lower 95% 2-sided confidence interval", &EmpiricalPoint::Lower);
  }

  const SeriesSource& source_;
  const CurveTable& table_;
  std::int32_t top_;
  GraphKind kind_;
  GraphSwitches show_;
  std::int32_t smoothing_;
  std::vector<Series> series_;
};

}  // namespace

std::vector<Series> BuildSeries(const SeriesSource& source, const CurveRequest& request) {
  return SeriesBuilder(source, request).Build();
}

}  // namespace tessaly
