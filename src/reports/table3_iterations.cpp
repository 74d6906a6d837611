#include "reports/table3_iterations.h"

#include <cmath>

#include "reports/edit_word.h"
#include "reports/model_text.h"
#include "reports/table1_specification.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::string_view kHeadings[] = {" Iteration      Max. Score Residual      Max. Logit Change ",
                                          "             Elements    %  Categories   Elements    Steps "};
constexpr std::string_view kScreenProx =
    R"(Iteration ####  PROX  \                     \                      max.=###.###)";
constexpr std::string_view kScreenJmle =
    R"(Iteration ####  \  \                       max.=######.# ###.#     max.=###.###)";
constexpr std::string_view kProxRow = R"( PROX####     \                      \   ###.####          )";
constexpr std::string_view kProxRowWithSteps = R"( PROX####     \                      \   ###.#### ###.#### )";
constexpr std::string_view kSettledRow = R"( \  \#### ######.####                  #####.####          )";
constexpr std::string_view kJmleRow = R"( \  \#### ######.#### ###.# #####.#### #####.#### ###.#### )";
constexpr std::string_view kRecountWords = "Recount required";

static_assert(kHeadings[0].size() == kHeadings[1].size() && kHeadings[0].size() == kProxRow.size() &&
              kProxRow.size() == kProxRowWithSteps.size() && kProxRow.size() == kSettledRow.size() &&
              kProxRow.size() == kJmleRow.size());

std::string_view RecountWords(const IterationSummary& summary) {
  return summary.Recount ? kRecountWords : "";
}

std::string ScreenLine(const IterationSummary& summary) {
  if (summary.Phase < Phase::Jmle)
    return EditWord(kScreenProx)
        .EditLong(summary.Iteration)
        .EditText(RecountWords(summary))
        .EditSingle(summary.MaxLogitChange)
        .Line();
  return EditWord(kScreenJmle)
      .EditLong(summary.Iteration)
      .EditText("JMLE")
      .EditDouble(summary.MaxScoreResidual)
      .EditSingle(100 * summary.MaxResidualFraction)
      .EditSingle(summary.MaxLogitChange)
      .Line();
}

std::string ProxRow(const IterationSummary& summary) {
  EditWord row(summary.MaxCategoryChange == 0 ? kProxRow : kProxRowWithSteps);
  row.EditLong(summary.Iteration).EditText(RecountWords(summary)).EditSingle(summary.MaxLogitChange);
  if (summary.MaxCategoryChange != 0) row.EditSingle(summary.MaxCategoryChange);
  return row.Line();
}

std::string TableRow(const IterationSummary& summary) {
  if (summary.Phase < Phase::Jmle) return ProxRow(summary);
  if (summary.MaxLogitChange == 0 && summary.MaxScoreResidual == 0)
    return EditWord(kSettledRow)
        .EditText("JMLE")
        .EditLong(summary.Iteration)
        .EditDouble(summary.MaxScoreResidual)
        .EditSingle(summary.MaxLogitChange)
        .Line();
  return EditWord(kJmleRow)
      .EditText("JMLE")
      .EditLong(summary.Iteration)
      .EditDouble(summary.MaxScoreResidual)
      .EditSingle(100 * summary.MaxResidualFraction)
      .EditDouble(summary.MaxCategoryResidual)
      .EditSingle(summary.MaxLogitChange)
      .EditSingle(summary.MaxCategoryChange)
      .Line();
}

}  // namespace

void IterationTable::EstimationStarted() {
  log_.StartTable("Table 3. Iteration Report");
  log_.BeginColumns({kHeadings[0], kHeadings[1]});
}

void IterationTable::IterationStarted(std::int32_t iteration) {
  log_.Heading(iteration, "Facet     Name          No./Cat", "", "");
}

void IterationTable::StepsUpdated(const LargestResiduals& largest) {
  WriteLargest(largest);
}

void IterationTable::WriteLargest(const LargestResiduals& largest) {
  log_.Largest(
      largest, [&](const ResidualDetail& detail) { return ResidualLabel(detail); },
      [&](const ResidualDetail& detail) {
        return detail.What == ResidualDetail::Kind::Element ? analysis_.Elements.ElementNumber[detail.Element]
                                                            : detail.Category;
      });
}

std::string IterationTable::ResidualLabel(const ResidualDetail& detail) const {
  switch (detail.What) {
    case ResidualDetail::Kind::Element:
      return PadToWidth(analysis_.Facets[detail.Facet].FacetLabel, 10, analysis_.Settings.Encoding) +
             analysis_.Elements.ElementLabel[detail.Element];
    case ResidualDetail::Kind::BinomialDiscrimination:
      return "Bin Disc:";
    case ResidualDetail::Kind::PoissonDiscrimination:
      return "Poi Disc:";
    case ResidualDetail::Kind::Step:
    case ResidualDetail::Kind::BiasTerm:
      break;
  }
  const ModelStatement& statement = analysis_.Models.Statements[analysis_.Scales.Scales[detail.Scale].ScaleModel];
  return "Scale:" + (statement.ModelHasHash ? ModelText(detail.Scale, analysis_) : statement.StatementText());
}

void IterationTable::FacetUpdated(FacetNumber facet, const RunningMoments& measures) {
  const double uscale = static_cast<double>(analysis_.Settings.Uscale);
  log_.Moments(analysis_.Facets[facet].FacetLabel,
               static_cast<double>(analysis_.Settings.Umean) + uscale * measures.Mean,
               std::fabs(uscale) * measures.StandardDeviation(), measures.N);
}

void IterationTable::Iterated(const IterationSummary& summary, const LargestResiduals& largest) {
  WriteLargest(largest);
  log_.Row(summary.Iteration, ScreenLine(summary), TableRow(summary));
}

void IterationTable::PriorityStarted(std::int32_t priority) {
  report_.WriteTableLine(" Priority:" + GeneralText(priority));
}

void IterationTable::LimitReached(std::int32_t limit) {
  report_.WriteTableLine("'Iterations=" + GeneralText(limit) + "' reached.  'Iterations=0' removes limit");
}

void IterationTable::EstimationEnded() {
  log_.EndTable();
}

}  // namespace tessaly
