#include "reports/table13_bias_report.h"

#include <algorithm>

#include "reports/arrangement.h"
#include "reports/bias_heading.h"
#include "reports/bias_order.h"
#include "reports/bias_rows.h"
#include "reports/table_footer.h"
#include "reports/table_frame.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

void WriteFooter(const BiasSummaries& summaries, TableFrame& frame, ReportWriter& report) {
  const RunningMoments& squares = summaries.TSquare;
  if (!(squares.N > 1)) return;
  frame.WriteRule(RuleKind::Bottom);
  report.WriteTableLine(ChiSquareLine(squares.N * squares.Mean, squares.N, "Fixed (all = 0)"));
}

}  // namespace

std::int32_t BiasReport(std::int32_t run, const std::string& arrange, const BiasTerms& terms, const Analysis& analysis,
                        ReportWriter& report, RunControl& control, Console& console) {
  if (std::none_of(terms.Terms.begin(), terms.Terms.end(), [](const BiasTerm& term) { return term.Estimable(); }))
    return 0;
  const BiasRows rows(terms, analysis);
  std::int32_t subTable = 0;
  for (const Arrangement& arrangement : ArrangementsOfAll(arrange)) {
    TableFrame frame(report, analysis.Settings, console);
    frame.StartTable("Table 13." + BareText(run) + "." + BareText(++subTable) +
                     "  Bias/Interaction Report (arranged by " + arrangement.Text + ")");
    WriteBiasHeading(terms, analysis.Settings.BiasDirection, report);
    frame.BeginColumns(rows.Layout().HeadLines, rows.Layout().RuleTemplate);
    BiasSummaries summaries;
    for (const TermIndex term : SortTerms(terms, analysis.Facets, analysis.Elements, analysis.Settings.BiasDirection,
                                          arrangement.Letters, control)) {
      summaries.Add(terms.Terms[term], rows.Direction());
      if (!rows.Shown(term)) continue;
      frame.RepeatColumns();
      frame.WriteRow(rows.Line(term));
    }
    frame.WriteSummaryRows(rows.SummaryLines(summaries));
    WriteFooter(summaries, frame, report);
    frame.CloseTable();
  }
  return subTable;
}

}  // namespace tessaly
