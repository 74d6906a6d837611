#include "reports/table9_bias_iterations.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "reports/bias_heading.h"
#include "reports/edit_word.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::string_view kBiasHeadings[] = {" Iteration      Max. Score Residual      Max. Logit Change ",
                                              "             Elements    %  Categories   Elements    Cells "};
constexpr std::string_view kScreen =
    R"(Iteration ####  \  \                       max.=######.# ###.#     max.=###.### ######)";
constexpr std::string_view kSettledBiasRow = R"( \  \#### ######.####                  #####.####          )";
constexpr std::string_view kRow = R"( \  \#### ######.#### ###.#            #####.####  ####### )";
constexpr std::string_view kStage = "BIAS";
/// Columns of the names in the heading of an iteration, and of a term in the lines below it.
constexpr int kNamesWidth = 21;
constexpr int kLabelWidth = 24;

static_assert(kBiasHeadings[0].size() == kBiasHeadings[1].size() && kBiasHeadings[0].size() == kSettledBiasRow.size() &&
              kBiasHeadings[0].size() == kRow.size());

std::string BiasScreenLine(const IterationSummary& summary) {
  return EditWord(kScreen)
      .EditLong(summary.Iteration)
      .EditText(kStage)
      .EditDouble(summary.MaxScoreResidual)
      .EditSingle(100 * summary.MaxResidualFraction)
      .EditSingle(summary.MaxLogitChange)
      .EditLong(summary.ActiveCells)
      .Line();
}

std::string BiasTableRow(const IterationSummary& summary) {
  const bool settled = summary.MaxLogitChange == 0 && summary.MaxScoreResidual == 0;
  EditWord row(settled ? kSettledBiasRow : kRow);
  row.EditText(kStage).EditLong(summary.Iteration).EditDouble(summary.MaxScoreResidual);
  if (settled) return row.EditSingle(summary.MaxLogitChange).Line();
  return row.EditSingle(100 * summary.MaxResidualFraction)
      .EditSingle(summary.MaxLogitChange)
      .EditLong(summary.ActiveCells)
      .Line();
}

}  // namespace

BiasIterationTable::BiasIterationTable(std::int32_t run, const BiasTerms& terms, const Analysis& analysis,
                                       ReportWriter& report, Console& console)
    : terms_(terms), analysis_(analysis), log_(analysis.Settings, report, console) {
  log_.StartTable("Table 9." + BareText(run) + "  Bias Iteration Report");
  WriteBiasHeading(terms, analysis.Settings.BiasDirection, report);
}

void BiasIterationTable::EstimationStarted() {
  log_.BeginColumns({kBiasHeadings[0], kBiasHeadings[1]});
}

void BiasIterationTable::IterationStarted(std::int32_t iteration) {
  log_.Heading(iteration, "Model:" + PadToWidth(terms_.Label(), kNamesWidth, analysis_.Settings.Encoding) + " No.",
               "  Active", "  Cells");
}

void BiasIterationTable::FacetUpdated(FacetNumber, const RunningMoments& sizes) {
  const double uscale = static_cast<double>(analysis_.Settings.Uscale);
  log_.Moments(terms_.Label(), uscale * sizes.Mean, std::fabs(uscale) * sizes.StandardDeviation(), sizes.N);
}

void BiasIterationTable::Iterated(const IterationSummary& summary, const LargestResiduals& largest) {
  log_.Largest(
      largest, [&](const ResidualDetail& detail) { return TermLabel(detail.Term); },
      [](const ResidualDetail& detail) { return detail.Term.value; });
  log_.Row(summary.Iteration, BiasScreenLine(summary), BiasTableRow(summary));
}

std::string BiasIterationTable::TermLabel(TermIndex term) const {
  const auto facets = static_cast<int>(terms_.Positions().size());
  const int share = std::max((kLabelWidth - (facets - 1)) / facets, 1);
  std::string label;
  for (std::size_t position = 0; position < terms_.Positions().size(); ++position) {
    const ElementIndex element = terms_.Element(term, position);
    if (position > 0) label += ' ';
    label +=
        PadToWidth(BareText(analysis_.Elements.ElementNumber[element]) + " " + analysis_.Elements.ElementLabel[element],
                   share, analysis_.Settings.Encoding);
  }
  return label;
}

}  // namespace tessaly
