#include "reports/table3_iterations.h"

#include <algorithm>
#include <vector>

#include "reports/edit_word.h"
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
constexpr std::string_view kResidualLine = R"(\                      \& ###### & & & ###.###  ###.###)";
constexpr std::string_view kFacetLine = R"(\            \  Mean=####.## S.D.=####.## Count=######)";
constexpr std::string_view kRecountWords = "Recount required";

constexpr int kScoreWidth = 8;
constexpr int kPercentWidth = 5;

static_assert(kHeadings[0].size() == kHeadings[1].size() && kHeadings[0].size() == kProxRow.size() &&
              kProxRow.size() == kProxRowWithSteps.size() && kProxRow.size() == kSettledRow.size() &&
              kProxRow.size() == kJmleRow.size());

std::string Boxed(std::string_view line) {
  return box::kVertical + std::string(line) + box::kVertical;
}

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
  frame_.StartTable("Table 3. Iteration Report");
  std::vector<std::string> headings;
  for (const std::string_view heading : kHeadings) {
    headings.push_back(Boxed(heading));
    if (analysis_.Settings.T3onscreen) console_.ShowMessage(ToTextBox(headings.back()));
  }
  frame_.BeginColumns(std::move(headings), "x" + std::string(kHeadings[0].size(), '-') + "x");
}

void IterationTable::Detail(const std::string& line) {
  if (!analysis_.Settings.T3onscreen) console_.ShowMessage(line);
  ReportDetail(line);
}

void IterationTable::ReportDetail(const std::string& line) {
  if (analysis_.Settings.WriteIterations) frame_.WriteRow(line);
}

void IterationTable::IterationStarted(std::int32_t iteration) {
  Detail("Iteration" + CutOrPad(GeneralText(iteration), 5) +
         "Largest Residuals  |----------Score------------|   logit Measure");
  Detail("Facet     Name          No./Cat   Raw  Expected Residual Resd%  Value    Change");
}

void IterationTable::StepsUpdated(const LargestResiduals& largest) {
  WriteLargest(largest);
}

void IterationTable::WriteLargest(const LargestResiduals& largest) {
  std::vector<std::string> written;
  for (const auto* detail : {&largest.Residual, &largest.Change, &largest.Fraction}) {
    if (!*detail) continue;
    std::string line = ResidualLine(**detail);
    if (std::find(written.begin(), written.end(), line) != written.end()) continue;
    Detail(line);
    written.push_back(std::move(line));
  }
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
      break;
  }
  return "Scale:" + analysis_.Models.Statements[analysis_.Scales.Scales[detail.Scale].ScaleModel].StatementText();
}

std::string IterationTable::ResidualLine(const ResidualDetail& detail) const {
  const auto score = [&](double value) {
    return detail.WithScores ? FormatNumber(value, kScoreWidth, 1) : std::string(kScoreWidth, ' ');
  };
  const bool withPercent = detail.WithScores && detail.Fraction != 0;
  const bool element = detail.What == ResidualDetail::Kind::Element;
  return EditWord(kResidualLine, analysis_.Settings.Encoding)
      .EditText(ResidualLabel(detail))
      .EditText("")
      .EditLong(element ? analysis_.Elements.ElementNumber[detail.Element] : detail.Category)
      .EditText(score(detail.Observed))
      .EditText(score(detail.Expected))
      .EditText(score(detail.Residual) +
                (withPercent ? FormatSingle(100 * detail.Fraction, kPercentWidth, 1) : std::string(kPercentWidth, ' ')))
      .EditSingle(detail.Value)
      .EditSingle(detail.Change)
      .Line();
}

void IterationTable::FacetUpdated(FacetNumber facet, const RunningMoments& measures) {
  if (!analysis_.Settings.WriteIterations) return;
  const double uscale = static_cast<double>(analysis_.Settings.Uscale);
  Detail(EditWord(kFacetLine, analysis_.Settings.Encoding)
             .EditText(analysis_.Facets[facet].FacetLabel)
             .EditDouble(static_cast<double>(analysis_.Settings.Umean) + uscale * measures.Mean)
             .EditDouble(uscale * measures.StandardDeviation())
             .EditLong(static_cast<std::int32_t>(measures.N))
             .Line());
}

void IterationTable::Iterated(const IterationSummary& summary, const LargestResiduals& largest) {
  WriteLargest(largest);
  const std::string row = Boxed(TableRow(summary));
  console_.ShowMessage(analysis_.Settings.T3onscreen ? ToTextBox(row) : ScreenLine(summary));
  if (!analysis_.Settings.WriteIterations) return;
  frame_.WriteRule(RuleKind::Middle);
  frame_.WriteRow(ScreenLine(summary));
  frame_.WriteRule(RuleKind::Middle);
  frame_.WriteRow(row);
}

void IterationTable::PriorityStarted(std::int32_t priority) {
  report_.WriteTableLine(" Priority:" + GeneralText(priority));
}

void IterationTable::LimitReached(std::int32_t limit) {
  report_.WriteTableLine("'Iterations=" + GeneralText(limit) + "' reached.  'Iterations=0' removes limit");
}

void IterationTable::EstimationEnded() {
  frame_.WriteRule(RuleKind::Bottom);
}

}  // namespace tessaly
