// Title, column headings and rules of a table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reports/report_writer.h"
#include "state/settings.h"
#include "support/host.h"

namespace tessaly {

/// One table being written.
class TableFrame {
 public:
  TableFrame(ReportWriter& report, const Settings& settings, Console& console)
      : report_(report), settings_(settings), console_(console) {}

  /// Announces the table on the screen and writes its title.
  void StartTable(std::string_view heading);
  /// Writes the title alone, for a sub-table.
  void WriteTableTitle(std::string_view heading);

  /// Writes the column headings between rules. `ruleTemplate` as for `BoxLine`.
  void BeginColumns(std::vector<std::string> headLines, std::string ruleTemplate);
  /// Repeats the column headings where `Juxtapose=` asks for it: call before each row.
  void RepeatColumns();
  /// Column headings once more inside the table, with a rule below them.
  void RepeatHeadingLines();
  /// A row of the table.
  void WriteRow(std::string_view line);
  void WriteRule(RuleKind kind);
  /// The rows that sum up the rows before them: below a rule and, if the headings are far above, below headings again.
  void WriteSummaryRows(const std::vector<std::string>& lines);
  /// The line that closes the table, without corners.
  void CloseTable();

 private:
  ReportWriter& report_;
  const Settings& settings_;
  Console& console_;
  std::vector<std::string> headLines_;
  std::string ruleTemplate_;
  /// Rows since the column headings.
  std::int32_t linesSinceHeading_ = 0;
};

}  // namespace tessaly
