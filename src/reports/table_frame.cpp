#include "reports/table_frame.h"

#include <utility>

#include "support/bytes.h"

namespace tessaly {

namespace {

constexpr char kNewPageMark = '^';
constexpr char kFormFeed = '\f';
constexpr std::int32_t kRowsBetweenPolls = 1000;
/// More rows than this and the summary rows get headings of their own.
constexpr std::int32_t kRowsInView = 15;

}  // namespace

void TableFrame::StartTable(std::string_view heading) {
  console_.ShowMessage(heading);
  WriteTableTitle(heading);
}

void TableFrame::WriteTableTitle(std::string_view heading) {
  console_.ShowProgress("", false);
  std::string title = settings_.Title;
  if (!title.empty() && title.front() == kNewPageMark) title.front() = kFormFeed;
  report_.WriteTableLine("");
  report_.WriteTableLine(title);
  report_.WriteTableLine(std::string(heading) + ".");
  report_.WriteTableLine("");
}

void TableFrame::BeginColumns(std::vector<std::string> headLines, std::string ruleTemplate) {
  headLines_ = std::move(headLines);
  ruleTemplate_ = std::move(ruleTemplate);
  WriteRule(RuleKind::Top);
  RepeatHeadingLines();
}

void TableFrame::RepeatHeadingLines() {
  for (const std::string& line : headLines_) {
    if (!TrimBlanks(line).empty()) report_.WriteTableLine(line);
  }
  WriteRule(RuleKind::Middle);
  linesSinceHeading_ = 0;
}

void TableFrame::RepeatColumns() {
  if (settings_.JuxtaposeLines == 0 || linesSinceHeading_ < settings_.JuxtaposeLines) return;
  report_.WriteTableLine("");
  WriteRule(RuleKind::Top);
  RepeatHeadingLines();
}

void TableFrame::WriteRow(std::string_view line) {
  report_.WriteTableLine(line);
  ++linesSinceHeading_;
  // Long tables can be left.
  if (linesSinceHeading_ % kRowsBetweenPolls == 0) console_.ShowProgress("", false);
}

void TableFrame::WriteRule(RuleKind kind) {
  report_.WriteTableLine(BoxLine(ruleTemplate_, kind));
}

void TableFrame::WriteSummaryRows(const std::vector<std::string>& lines) {
  if (linesSinceHeading_ > 0) WriteRule(RuleKind::Middle);
  if (settings_.JuxtaposeLines == 0 && linesSinceHeading_ > kRowsInView) RepeatHeadingLines();
  for (const std::string& line : lines) WriteRow(line);
}

void TableFrame::CloseTable() {
  report_.WriteTableLine(BoxLine(std::string(ruleTemplate_.size(), '-'), RuleKind::Bottom));
}

}  // namespace tessaly
