#include "output/graph_file.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "model/category_measures.h"
#include "model/measure_axis.h"
#include "output/cell_line.h"
#include "output/label_field.h"
#include "reports/output_cell.h"
#include "reports/reported_scale.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// How far from the lowest and the highest expected score the curves end.
constexpr float kEndScore = 0.1F;
constexpr std::int32_t kMostPoints = 1000;

/// The raw category of an ordinal. Counts on from the highest one, as Poisson counts and scales with more categories
/// do.
std::int32_t RawCategory(const ReportedScale& scale, std::int32_t ordinal) {
  const std::int32_t known = std::min(ordinal, scale.Top);
  return scale.RawCategory[static_cast<std::size_t>(known)] + ordinal - known;
}

/// Writes the lines of the scales.
class GraphLines {
 public:
  GraphLines(int decimals, const MeasureAxis& axis, const Settings& settings, ResponseKernel& kernel, TextOutput& file)
      : axis_(axis), settings_(settings), kernel_(kernel), line_(settings.CsvDelimiter, decimals), file_(file) {}

  void Write(std::int32_t place, const ReportedScale& scale) {
    for (std::int32_t point = 0; point <= axis_.Columns(); ++point) {
      const float measure = MeasureAt(point);
      const float expected = kernel_.CategoryProbabilities(scale.Number, scale.Type, scale.Top, measure);
      const std::int32_t nearest = RoundToLong(std::floor(static_cast<double>(expected) + 0.5));
      line_.Clear();
      line_.AddWhole(place);
      line_.AddReal(measure);
      line_.AddReal(expected + static_cast<float>(scale.RawCategory.front()));
      line_.AddWhole(RawCategory(scale, nearest));
      for (std::int32_t k = 0; k <= scale.Top; ++k) line_.AddReal(kernel_.Probability(k));
      file_.WriteLine(line_.Line());
    }
  }

 private:
  /// Logit.
  float MeasureAt(std::int32_t point) const {
    const double user = static_cast<double>(axis_.Low) + point * axis_.Unit();
    return static_cast<float>((user - static_cast<double>(settings_.Umean)) / static_cast<double>(settings_.Uscale));
  }

  const MeasureAxis& axis_;
  const Settings& settings_;
  ResponseKernel& kernel_;
  CellLine line_;
  TextOutput& file_;
};

std::string HeadingLine(const Analysis& analysis) {
  const ScaleTables& scales = analysis.Scales;
  std::vector<std::string> headings{"Scale", "Measure", "Expected", "ExpCat"};
  if (!scales.ScaleOrder.empty()) {
    const ReportedScale first = DescribeScale(scales.ScaleOrder.front(), analysis);
    std::int32_t widest = 0;
    for (const ScaleNumber scale : scales.ScaleOrder)
      widest = std::max<std::int32_t>(widest, scales.Scales[scale].ScaleTopCategory);
    for (std::int32_t k = 0; k <= widest; ++k) headings.push_back("Prob:" + BareText(RawCategory(first, k)));
  }
  const LabelField labels(analysis.Settings, OutputDestination::Plain);
  for (std::string& heading : headings)
    heading = labels.Fixed() ? RightJustified(labels.Quoted(heading), kFieldWidth) : labels.Delimited(heading);
  return Joined(headings, labels.Fixed() ? std::string() : labels.Delimiter());
}

}  // namespace

void WriteGraphFile(int decimals, const Analysis& analysis, ResponseKernel& kernel, TextOutput& file) {
  const Settings& settings = analysis.Settings;
  if (settings.HeadingLinesOption) file.WriteLine(HeadingLine(analysis));
  const CurveRange range = FindScoreRange(kEndScore, 1, analysis.Models, analysis.Scales, kernel);
  const std::optional<MeasureAxis> axis =
      FitMeasureAxis(settings.UserMeasure(range.Low), settings.UserMeasure(range.High), kMostPoints);
  // Without an axis the measures are beyond all drawing.
  if (!axis) return;
  GraphLines lines(decimals, *axis, settings, kernel, file);
  std::int32_t place = 0;
  for (const ScaleNumber scale : analysis.Scales.ScaleOrder) lines.Write(++place, DescribeScale(scale, analysis));
}

}  // namespace tessaly
