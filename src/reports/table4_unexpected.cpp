#include "reports/table4_unexpected.h"

#include <string>

#include "reports/element_cell.h"
#include "reports/short_layout.h"
#include "reports/table_frame.h"
#include "reports/unexpected_order.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kCategoryWidth = 3;
constexpr int kFigureWidth = 5;

class UnexpectedTable {
 public:
  UnexpectedTable(const Analysis& analysis, ReportWriter& report, Console& console)
      : analysis_(analysis), settings_(analysis.Settings), report_(report), frame_(report, settings_, console) {
    for (const DataColumn& column : analysis.Fields.Columns) {
      heads_.push_back(column.ColumnPosition.value == 0 ? std::string()
                                                        : FacetHead(FacetOf(column), settings_.Encoding));
      // A blank ends each piece, whatever its facet is called.
      if (!heads_.back().empty()) heads_.back().back() = ' ';
    }
    layout_ = BuildShortLayout(Joined(heads_, ""), settings_.LeftHand, settings_.Encoding);
  }

  void Write(const std::string& heading, const std::vector<UnexpectedResponse>& responses, const UnexpectedList& list) {
    frame_.StartTable(heading);
    frame_.BeginColumns({layout_.Heading}, layout_.RuleTemplate);
    for (const UnexpectedResponse& response : responses) {
      frame_.RepeatColumns();
      frame_.WriteRow(Row(response));
    }
    if (responses.empty()) {
      report_.WriteTableLine(NothingFound(list.Least()));
    } else {
      frame_.WriteRule(RuleKind::Middle);
      report_.WriteTableLine(layout_.Heading);
    }
    frame_.CloseTable();
    // A table that is cut must not look complete.
    if (list.DroppedCount() > 0)
      report_.WriteTableLine("T4MAX=" + BareText(settings_.T4Max) + ":" + GeneralText(list.DroppedCount()) +
                             " more unexpected responses are not listed");
  }

 private:
  const Facet& FacetOf(const DataColumn& column) const { return analysis_.Facets[column.ColumnFacet]; }

  std::string Row(const UnexpectedResponse& response) const {
    const auto category = [](std::int32_t value) {
      return FormatNumber(static_cast<double>(value), kCategoryWidth, 0);
    };
    const auto figure = [](float value) { return FormatSingle(value, kFigureWidth, 1); };
    return layout_.Row(Label(response),
                       {category(response.Category), category(response.Score), figure(response.Expected),
                        figure(static_cast<float>(response.Score) - response.Expected), figure(response.ZScore)},
                       settings_.Encoding);
  }

  /// The elements of all data columns, each under its piece of the heading.
  std::string Label(const UnexpectedResponse& response) const {
    std::string label;
    std::size_t at = 0;
    for (const DataColumn& column : analysis_.Fields.Columns) {
      const std::string& head = heads_[at++];
      if (head.empty()) continue;
      const ElementIndex element = response.Elements[static_cast<std::size_t>(column.ColumnPosition.value - 1)];
      label += ElementCell(FacetOf(column), element, analysis_.Elements, DisplayLength(head, settings_.Encoding),
                           settings_.Encoding);
    }
    return label;
  }

  std::string NothingFound(float least) const {
    const std::string words = " *** No unexpected observation with StRes >=" + GeneralText(least);
    const auto width = static_cast<int>(layout_.RuleTemplate.size()) - 2;
    return box::kVertical + CutOrPad(words, std::max(width, static_cast<int>(words.size()))) + box::kVertical;
  }

  const Analysis& analysis_;
  const Settings& settings_;
  ReportWriter& report_;
  TableFrame frame_;
  /// By data column; empty for a column without position and for a facet with nothing to print.
  std::vector<std::string> heads_;
  ShortLayout layout_;
};

}  // namespace

bool WantsUnexpectedTables(const Settings& settings) {
  return settings.T4Max > 0 && !ParseUsort(settings.USort).empty();
}

void UnexpectedTables(const UnexpectedList& list, const Analysis& analysis, ReportWriter& report, RunControl& control,
                      Console& console) {
  if (analysis.Settings.T4Max == 0) {
    console.ShowMessage("Table 4 not output. T4maximum = 0");
    return;
  }
  std::vector<UnexpectedResponse> responses = list.Sorted(control);
  UnexpectedTable table(analysis, report, console);
  std::int32_t subTable = 0;
  for (const UnexpectedOrder& order : ParseUsort(analysis.Settings.USort)) {
    SortUnexpected(order, analysis.Fields, control, responses);
    const std::string wording = order.Wording.empty() ? "order in data" : order.Wording;
    table.Write("Table 4." + BareText(++subTable) + " Unexpected Responses (" +
                    BareText(static_cast<std::int64_t>(responses.size())) + " residuals sorted by " + wording + ")",
                responses, list);
  }
}

}  // namespace tessaly
