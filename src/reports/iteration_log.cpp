#include "reports/iteration_log.h"

#include <algorithm>

#include "reports/edit_word.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::string_view kResidualLine = R"(\                      \& ###### & & & ###.###  ###.###)";
constexpr std::string_view kMomentsLine = R"(\            \  Mean=####.## S.D.=####.## Count=######)";

constexpr int kScoreWidth = 8;
constexpr int kLogPercentWidth = 5;

std::string Boxed(std::string_view line) {
  return box::kVertical + std::string(line) + box::kVertical;
}

}  // namespace

void IterationLog::BeginColumns(const std::vector<std::string_view>& headings) {
  std::vector<std::string> lines;
  for (const std::string_view heading : headings) {
    lines.push_back(Boxed(heading));
    if (settings_.T3onscreen) console_.ShowMessage(ToTextBox(lines.back()));
  }
  frame_.BeginColumns(std::move(lines), "x" + std::string(headings.front().size(), '-') + "x");
}

void IterationLog::Heading(std::int32_t iteration, std::string_view facets, std::string_view active,
                           std::string_view cells) {
  Detail("Iteration" + CutOrPad(GeneralText(iteration), 5) +
         "Largest Residuals  |----------Score------------|   logit Measure" + std::string(active));
  Detail(std::string(facets) + "   Raw  Expected Residual Resd%  Value    Change" + std::string(cells));
}

void IterationLog::Detail(const std::string& line) {
  if (!settings_.T3onscreen) console_.ShowMessage(line);
  if (settings_.WriteIterations) frame_.WriteRow(line);
}

void IterationLog::Details(const std::vector<std::string>& lines) {
  for (auto line = lines.begin(); line != lines.end(); ++line)
    if (std::find(lines.begin(), line, *line) == line) Detail(*line);
}

std::string IterationLog::ResidualLine(const ResidualDetail& detail, const std::string& label,
                                       std::int32_t number) const {
  const auto score = [&](double value) {
    return detail.WithScores ? FormatNumber(value, kScoreWidth, 1) : std::string(kScoreWidth, ' ');
  };
  const bool withPercent = detail.WithScores && detail.Fraction != 0;
  return EditWord(kResidualLine, settings_.Encoding)
      .EditText(label)
      .EditText("")
      .EditLong(number)
      .EditText(score(detail.Observed))
      .EditText(score(detail.Expected))
      .EditText(score(detail.Residual) + (withPercent ? FormatSingle(100 * detail.Fraction, kLogPercentWidth, 1)
                                                      : std::string(kLogPercentWidth, ' ')))
      .EditSingle(detail.Value)
      .EditSingle(detail.Change)
      .Line();
}

void IterationLog::Moments(std::string_view label, double mean, double deviation, double count) {
  if (!settings_.WriteIterations) return;
  Detail(EditWord(kMomentsLine, settings_.Encoding)
             .EditText(label)
             .EditDouble(mean)
             .EditDouble(deviation)
             .EditLong(static_cast<std::int32_t>(count))
             .Line());
}

void IterationLog::Row(std::int32_t iteration, const std::string& screenLine, std::string_view tableRow) {
  const std::string row = Boxed(tableRow);
  heldRow_.clear();
  if (!settings_.T3onscreen) {
    console_.ShowMessage(screenLine);
  } else if (IsTold(iteration)) {
    console_.ShowMessage(ToTextBox(row));
  } else {
    heldRow_ = ToTextBox(row);
  }
  if (!settings_.WriteIterations) return;
  frame_.WriteRule(RuleKind::Middle);
  frame_.WriteRow(screenLine);
  frame_.WriteRule(RuleKind::Middle);
  frame_.WriteRow(row);
}

void IterationLog::EndTable() {
  if (!heldRow_.empty()) console_.ShowMessage(heldRow_);
  heldRow_.clear();
  frame_.WriteRule(RuleKind::Bottom);
}

}  // namespace tessaly
