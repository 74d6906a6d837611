// What the iteration reports have in common: the screen's lines, the rows of the table, the largest residuals.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "estimate/iteration_summary.h"
#include "reports/report_writer.h"
#include "reports/table_frame.h"
#include "state/settings.h"
#include "support/host.h"

namespace tessaly {

/// The lines of an iteration report. The report has them with `Write=Y` only; the screen has either the rows of the
/// table or everything else.
class IterationLog {
 public:
  IterationLog(const Settings& settings, ReportWriter& report, Console& console)
      : settings_(settings), console_(console), frame_(report, settings, console) {}

  void StartTable(std::string_view heading) { frame_.StartTable(heading); }
  /// Column headings of one width, without the box characters at their ends.
  void BeginColumns(const std::vector<std::string_view>& headings);
  /// The two lines in front of a pass: `facets` heads the column of names and numbers, `cells` what else there is.
  void Heading(std::int32_t iteration, std::string_view facets, std::string_view active, std::string_view cells);
  /// A detail of an iteration.
  void Detail(const std::string& line);
  /// The lines of the largest values, each once. `label` names whom they belong to, `number` numbers it.
  template <class Label, class Number>
  void Largest(const LargestResiduals& largest, Label label, Number number) {
    std::vector<std::string> lines;
    for (const auto* detail : {&largest.Residual, &largest.Change, &largest.Fraction})
      if (*detail) lines.push_back(ResidualLine(**detail, label(**detail), number(**detail)));
    Details(lines);
  }
  /// "... Mean= S.D.= Count=", with `Write=Y`. `mean` and `deviation` in user units.
  void Moments(std::string_view label, double mean, double deviation, double count);
  /// What the screen and what the table show of an iteration. Where the screen shows rows only, one that is not told
  /// appears if it is the last.
  void Row(std::int32_t iteration, const std::string& screenLine, std::string_view tableRow);
  void EndTable();

 private:
  std::string ResidualLine(const ResidualDetail& detail, const std::string& label, std::int32_t number) const;
  void Details(const std::vector<std::string>& lines);

  const Settings& settings_;
  Console& console_;
  TableFrame frame_;
  /// The row of the last iteration, if the screen has not shown it.
  std::string heldRow_;
};

}  // namespace tessaly
