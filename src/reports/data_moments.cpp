#include "reports/data_moments.h"

#include <array>
#include <cmath>

#include "reports/box_line.h"
#include "reports/short_layout.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kSummaryWidth = 5;
constexpr int kVarianceWidth = 7;
constexpr int kShareWidth = 8;

std::string MeanLabel(const DataFit& fit, int width) {
  const std::string count = TrimmedNumber(fit.Weight()) + ")";
  const std::string label = (fit.WeightedData ? "Mean (Weighted: " : "Mean (Count: ") + count;
  if (label.size() <= static_cast<std::size_t>(width)) return label;
  return (fit.WeightedData ? "Mean (Wtd: " : "Mean (Cnt: ") + count;
}

}  // namespace

void WriteDataMoments(const DataFit& fit, const Settings& settings, ReportWriter& report) {
  const ShortLayout layout = BuildShortLayout("", settings.LeftHand, settings.Encoding);
  const auto row = [&](const std::string& label, auto figure) {
    std::array<std::string, DataFit::ItemCount> numbers;
    for (std::size_t item = 0; item < numbers.size(); ++item)
      numbers[item] = FormatNumber(figure(fit.Summary[item]), kSummaryWidth, 2);
    report.WriteTableLine(layout.Row(label, numbers, settings.Encoding));
  };
  report.WriteTableLine(BoxLine(layout.RuleTemplate, RuleKind::Top));
  report.WriteTableLine(layout.Heading);
  row(MeanLabel(fit, layout.LabelWidth), [](const RunningMoments& m) { return m.Mean; });
  row("S.D. (Population)", [](const RunningMoments& m) { return m.StandardDeviation(); });
  if (const double n = fit.Weight(); n > 1)
    row("S.D. (Sample)", [&](const RunningMoments& m) { return m.StandardDeviation() * std::sqrt(n / (n - 1)); });
  report.WriteTableLine(BoxLine(std::string(layout.RuleTemplate.size(), '-'), RuleKind::Bottom));
}

double VarianceOf(const DataFit& fit, DataFit::Item item) {
  const double deviation = fit.Summary[item].StandardDeviation();
  return deviation * deviation;
}

std::string VarianceLine(std::string_view words, double variance, double all) {
  return std::string(words) + "=" + ZeroedNumber(variance, kVarianceWidth, 3) +
         ZeroedNumber(100 * variance / (all == 0 ? 1.0 : all), kShareWidth - 1, 2) + "%";
}

}  // namespace tessaly
