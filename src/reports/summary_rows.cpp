#include "reports/summary_rows.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "reports/edit_word.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Where a row template has room for the group number.
constexpr std::string_view kGroupPlace = "g^^^^s";

class SummaryRow {
 public:
  SummaryRow(const RowSummaries& summaries, const MeasurementLayout& layout, const MeasurementColumns& columns,
             const Settings& settings)
      : summaries_(summaries), layout_(layout), columns_(columns), settings_(settings) {}

  std::string Line(SummaryKind kind) const {
    const auto figure = [&](const RunningMoments& moments) { return SummaryFigure(kind, moments); };
    const std::string label = SummaryLabel(kind, summaries_.Rows.Score.N, layout_.LabelWidth);
    EditWord word(layout_.RowFmtSummary, settings_.Encoding);
    word.EditText(columns_.LeftHand ? label : "");
    const auto& rows = summaries_.Rows;
    for (const RunningMoments* const moments : {&rows.Score, &rows.Count, &rows.Average, &rows.FairAverage})
      word.EditDouble(figure(*moments));
    const MeasureSummary& wide = summaries_.Wide;
    word.EditText(FormatNumber(InUserUnits(kind, figure(wide.Measure)), kMeasureWidth,
                               DecimalsIn(kMeasureWidth, settings_.Udecimals)));
    word.EditText(
        FormatNumber(Spread(figure(wide.StandardError)), kErrorWidth, DecimalsIn(kErrorWidth, settings_.Udecimals)));
    const MeasureSummary& active = summaries_.Active;
    for (const RunningMoments* const moments :
         {&active.InfitMeanSquare, &active.InfitZStd, &active.OutfitMeanSquare, &active.OutfitZStd})
      word.EditDouble(figure(*moments));
    const bool correlation = columns_.Correlation != CorrelationColumns::None;
    word.EditText(correlation ? FormatNumber(figure(rows.Correlation), kErrorWidth, 2) : "");
    if (columns_.Correlation == CorrelationColumns::PointMeasure) word.EditText("");
    // The columns of agreement.
    word.EditText("").EditText("");
    return word.EditText(columns_.LeftHand ? "" : label).Line();
  }

 private:
  double Spread(double logits) const { return std::fabs(static_cast<double>(settings_.Uscale)) * logits; }
  double InUserUnits(SummaryKind kind, double measure) const {
    if (kind != SummaryKind::Mean) return Spread(measure);
    return static_cast<double>(settings_.Uscale) * measure + static_cast<double>(settings_.Umean);
  }

  const RowSummaries& summaries_;
  const MeasurementLayout& layout_;
  const MeasurementColumns& columns_;
  const Settings& settings_;
};

}  // namespace

double SummaryFigure(SummaryKind kind, const RunningMoments& moments) {
  if (kind == SummaryKind::Mean) return moments.Mean;
  if (kind == SummaryKind::Population) return moments.StandardDeviation();
  if (moments.N <= 1) return 0;
  // Sample deviations are printed from singles.
  return static_cast<double>(static_cast<float>(moments.StandardDeviation() * std::sqrt(moments.N / (moments.N - 1))));
}

std::string SummaryLabel(SummaryKind kind, double n, int width) {
  if (kind == SummaryKind::Population) return "S.D. (Population)";
  if (kind == SummaryKind::Sample) return "S.D. (Sample)";
  const std::string count = TrimmedNumber(n) + ")";
  const std::string label = "Mean (Count: " + count;
  return label.size() > static_cast<std::size_t>(width) ? "Mean (Cnt: " + count : label;
}

std::vector<std::string> SummaryRows(const RowSummaries& summaries, const MeasurementLayout& layout,
                                     const MeasurementColumns& columns, const Settings& settings, std::int32_t group,
                                     const std::string& groupLabel) {
  const SummaryRow row(summaries, layout, columns, settings);
  std::vector<std::string> lines = {row.Line(SummaryKind::Mean), row.Line(SummaryKind::Population)};
  const double most = std::max({summaries.Rows.Score.N, summaries.Active.Count(), summaries.Wide.Count()});
  if (most > 1) lines.push_back(row.Line(SummaryKind::Sample));
  if (!columns.Group) return lines;
  const std::string number = RightJustified(group == 0 ? "" : BareText(group), static_cast<int>(kGroupPlace.size()));
  for (std::string& line : lines) {
    if (const std::size_t at = line.find(kGroupPlace); at != std::string::npos)
      line.replace(at, kGroupPlace.size(), number);
    line += groupLabel;
  }
  return lines;
}

}  // namespace tessaly
