#include "reports/table12_bias_barcharts.h"

#include <string>

#include "reports/barchart.h"
#include "reports/bias_heading.h"
#include "reports/table_frame.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Draws the values that `value` gives of the estimable terms.
template <class Value>
void WriteBarchart(const std::string& label, const BiasTerms& terms, ReportWriter& report, Value value) {
  BarchartRange range;
  for (const BiasTerm& term : terms.Terms)
    if (term.Estimable()) range.Meet(value(term));
  Barchart chart(label, range);
  for (const BiasTerm& term : terms.Terms)
    if (term.Estimable()) chart.Tally(value(term));
  for (const std::string& line : chart.Lines()) report.WriteTableLine(line);
}

}  // namespace

void BiasBarcharts(std::int32_t run, const BiasTerms& terms, const Settings& settings, ReportWriter& report,
                   Console& console) {
  TableFrame(report, settings, console).StartTable("Table 12." + BareText(run) + "  Bias/Interaction Summary Report");
  WriteBiasHeading(terms, settings.BiasDirection, report);
  const double direction = static_cast<double>(settings.BiasDirection);
  const double uscale = static_cast<double>(settings.Uscale);
  WriteBarchart("Bias/Interaction Size:", terms, report,
                [&](const BiasTerm& term) { return uscale * direction * static_cast<double>(term.BiasSize); });
  WriteBarchart("Bias/Interaction Significance:", terms, report,
                [&](const BiasTerm& term) { return direction * static_cast<double>(term.TStatistic); });
}

}  // namespace tessaly
