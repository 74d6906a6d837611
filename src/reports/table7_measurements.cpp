#include "reports/table7_measurements.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

#include "reports/arrangement.h"
#include "reports/element_cell.h"
#include "reports/element_order.h"
#include "reports/measurement_layout.h"
#include "reports/measurement_row.h"
#include "reports/summary_rows.h"
#include "reports/table_footer.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr char kNoGroupTables = 'N';
/// Columns of a rule in front of the words of a group line.
constexpr std::size_t kGroupLineMargin = 2;

/// Writes the tables of one facet.
class FacetTables {
 public:
  FacetTables(FacetNumber number, const Analysis& analysis, ReportWriter& report, RunControl& control, Console& console)
      : number_(number),
        analysis_(analysis),
        facet_(analysis.Facets[number]),
        settings_(analysis.Settings),
        report_(report),
        control_(control),
        console_(console),
        rows_(number, analysis),
        layout_(BuildMeasurementLayout(rows_.Columns(), FacetHead(facet_, settings_.Encoding), settings_.Encoding)) {
    FindGroups();
  }

  void Write(const std::vector<Arrangement>& arrangements) {
    std::vector<std::int32_t> reportedGroups;
    for (const std::int32_t group : groups_) {
      const std::int32_t reported = ReportedElements(group);
      if (reported == 0) continue;
      reportedGroups.push_back(group);
      WriteArrangements(arrangements, group, reported);
    }
    if (std::count_if(reportedGroups.begin(), reportedGroups.end(), [](std::int32_t g) { return g > 0; }) > 1)
      WriteGroupSummary(reportedGroups);
  }

 private:
  /// The groups that get tables of their own; 0 is the whole facet.
  void FindGroups() {
    std::vector<ElementIndex> all;
    for (const ElementIndex element : facet_.Elements()) {
      if (analysis_.Elements.ElementStatus[element] == ElementStatus::Unobserved) continue;
      all.push_back(element);
      members_[std::abs(analysis_.Elements.ElementGroup[element])].push_back(element);
    }
    if (members_.empty()) return;
    highestGroup_ = members_.rbegin()->first;
    groupsDiffer_ = members_.size() > 1;
    if (!groupsDiffer_ || facet_.HasFlag(kNoGroupTables)) {
      groups_ = {groupsDiffer_ ? 0 : highestGroup_};
    } else {
      for (const auto& [group, members] : members_) groups_.push_back(group);
    }
    members_[0] = std::move(all);
  }

  /// Their elements that have a row; group 0 has those of all groups.
  std::vector<ElementIndex> Sorted(std::int32_t group, std::string_view letters) const {
    return SortElements(members_.at(group), analysis_.Elements, letters, settings_.OmitUnobserved, control_);
  }

  std::int32_t ReportedElements(std::int32_t group) const {
    std::int32_t count = 0;
    for (const ElementIndex element : members_.at(group)) {
      if (analysis_.Elements.ElementStatus[element] != ElementStatus::Unobserved &&
          analysis_.Elements.ElementStats[element].AllCount > 0)
        ++count;
    }
    return count;
  }

  void WriteArrangements(const std::vector<Arrangement>& arrangements, std::int32_t group, std::int32_t reported) {
    std::int32_t subTable = 0;
    for (const Arrangement& arrangement : arrangements) {
      if (!arrangement.AppliesTo(number_)) continue;
      WriteTable(arrangement, ++subTable, group, reported);
      if (reported == 1) break;
    }
  }

  std::string GroupLabel(std::int32_t group) const {
    const auto found = analysis_.GroupLabels.find({number_.value, group});
    return found == analysis_.GroupLabels.end() ? std::string() : " [" + found->second + "]";
  }

  std::string Heading(const std::string& arranged, std::int32_t subTable, std::int32_t group) const {
    std::string heading = "Table 7." + BareText(number_.value) + "." + BareText(subTable);
    if (groupsDiffer_ && group > 0) heading += "." + BareText(group) + GroupLabel(group);
    heading += "  " + facet_.FacetLabel + " Measurement Report";
    if (!arranged.empty()) heading += "  (arranged by " + arranged + ")";
    if (PrioritiesUsed()) heading += ". Estimation priority:" + GeneralText(facet_.FacetPriority);
    return heading;
  }

  bool PrioritiesUsed() const {
    return std::any_of(analysis_.Facets.begin(), analysis_.Facets.end(),
                       [](const Facet& facet) { return facet.FacetPriority != 1; });
  }

  void WriteTable(const Arrangement& arrangement, std::int32_t subTable, std::int32_t group, std::int32_t reported) {
    TableFrame frame(report_, settings_, console_);
    const std::string heading = Heading(reported > 1 ? arrangement.Text : "", subTable, group);
    if (group == 0) {
      frame.StartTable(heading);
    } else {
      frame.WriteTableTitle(heading);
    }
    frame.BeginColumns(layout_.HeadLines, layout_.RuleTemplate);
    if (groupsDiffer_ && group > 0) report_.WriteTableLine(GroupLine(group));
    const std::vector<ElementIndex> order = Sorted(group, arrangement.Letters);
    RowSummaries summaries;
    for (const ElementIndex element : order) {
      frame.RepeatColumns();
      frame.WriteRow(rows_.Line(element, layout_));
      rows_.Summarize(element, summaries);
    }
    if (!order.empty()) frame.WriteSummaryRows(SummaryLines(summaries, group));
    WriteFooter(summaries, group, frame);
    frame.CloseTable();
  }

  /// A line of the table that names its group.
  std::string GroupLine(std::int32_t group) const {
    std::string blanks = layout_.RuleTemplate;
    std::replace(blanks.begin(), blanks.end(), '-', ' ');
    const std::string line = BoxLine(blanks, RuleKind::Middle);
    const std::string words = "Group" + GeneralText(group) + GroupLabel(group);
    const std::size_t room = line.size() - 2 * kGroupLineMargin;
    const auto width = std::min(static_cast<std::size_t>(DisplayLength(words, settings_.Encoding)), room);
    return line.substr(0, kGroupLineMargin) + PadToWidth(words, static_cast<int>(width), settings_.Encoding) +
           line.substr(kGroupLineMargin + width);
  }

  std::vector<std::string> SummaryLines(const RowSummaries& summaries, std::int32_t group) const {
    return SummaryRows(summaries, layout_, rows_.Columns(), settings_, group, GroupLabel(group));
  }

  void WriteFooter(const RowSummaries& summaries, std::int32_t group, TableFrame& frame) const {
    const bool ofRaters = analysis_.Agreement.Facet == number_;
    const std::vector<std::string> separation = SeparationLines(summaries, settings_, ofRaters);
    if (!separation.empty()) frame.WriteRule(RuleKind::Bottom);
    for (const std::string& line : separation) report_.WriteTableLine(line);
    for (const std::string& line : ChiSquareLines(summaries, settings_)) report_.WriteTableLine(line);
    const bool whole = group == 0 || !groupsDiffer_;
    if (ofRaters && whole && summaries.Wide.Count() > 1) report_.WriteTableLine(AgreementLine(analysis_.Agreement));
  }

  /// Means of all groups, one above the other.
  void WriteGroupSummary(const std::vector<std::int32_t>& groups) const {
    TableFrame frame(report_, settings_, console_);
    frame.WriteTableTitle(Heading("N", 1, highestGroup_ + 1));
    frame.BeginColumns(layout_.HeadLines, layout_.RuleTemplate);
    for (const std::int32_t group : groups) {
      RowSummaries summaries;
      for (const ElementIndex element : Sorted(group, "N")) rows_.Summarize(element, summaries);
      if (group != groups.front()) frame.WriteRule(RuleKind::Middle);
      for (const std::string& line : SummaryLines(summaries, group)) frame.WriteRow(line);
    }
    frame.CloseTable();
  }

  FacetNumber number_;
  const Analysis& analysis_;
  const Facet& facet_;
  const Settings& settings_;
  ReportWriter& report_;
  RunControl& control_;
  Console& console_;
  MeasurementRows rows_;
  MeasurementLayout layout_;
  /// Those that were observed, by group; all of the facet under 0, which is also the group of those without one.
  std::map<std::int32_t, std::vector<ElementIndex>> members_;
  std::vector<std::int32_t> groups_;
  std::int32_t highestGroup_ = 0;
  bool groupsDiffer_ = false;
};

}  // namespace

void MeasurementReport(const std::string& arrange, const Analysis& analysis, ReportWriter& report, RunControl& control,
                       Console& console) {
  const std::vector<Arrangement> arrangements = Arrangements(arrange);
  for (const FacetNumber facet : analysis.Facets.all()) {
    if (analysis.Facets[facet].FacetLabelWidth > 0)
      FacetTables(facet, analysis, report, control, console).Write(arrangements);
  }
}

}  // namespace tessaly
