#include "reports/ruler.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reports/model_text.h"
#include "reports/ruler_cells.h"
#include "reports/ruler_elements.h"
#include "reports/ruler_plan.h"
#include "reports/scale_column.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Columns for the numbers of the axis; longer numbers widen it.
constexpr int kNumberWidth = 4;

std::string_view ScaleItem(ScaleDisplay scales) {
  return scales == ScaleDisplay::None ? "#S" : scales == ScaleDisplay::Categories ? "S" : "SL";
}

std::string EchoLine(const RulerColumns& columns, const Yardstick& yardstick, const RulerAxis& axis) {
  std::string line = "Vertical = (";
  for (const FacetColumn& column : columns.Facets)
    line += BareText(column.Facet.value) + static_cast<char>(column.Kind) + ",";
  line.append(ScaleItem(columns.Scales)).append(") Yardstick (columns lines low high extreme)=");
  line += BareText(yardstick.Columns);
  for (const double value : {axis.LinesPerUnit, axis.Low, axis.High}) line += "," + BareText(static_cast<float>(value));
  return line + (yardstick.ExtremesByMeasure ? ",Measure" : ",End");
}

/// The lines between the columns of one row of the picture.
struct RowEdges {
  char Left, Between, Right;
};

constexpr RowEdges kPlainRow{box::kVertical, box::kVertical, box::kVertical};
constexpr RowEdges kNumberRow{box::kLeftTee, box::kCross, box::kRightTee};
constexpr RowEdges kZeroRow{box::kDoubleLeftTee, box::kDoubleCross, box::kDoubleRightTee};
constexpr RowEdges kContinuedRow{':', ':', ':'};

class Ruler {
 public:
  Ruler(const RulerColumns& columns, const RulerAxis& axis, const PlacedFacets& placed, std::int32_t target,
        const Analysis& analysis, ResponseKernel& kernel)
      : axis_(axis), analysis_(analysis), measureWidth_(std::max(axis.NumberWidth(), kNumberWidth) + 1) {
    if (columns.Scales != ScaleDisplay::None) AddScales(columns.Scales == ScaleDisplay::CategoriesAndLabels, kernel);
    // The measures have a line on both sides.
    int margins = measureWidth_ + 2;
    for (const ScaleColumn& scale : scales_) margins += scale.Width() + 1;
    plans_ = PlanColumns(columns, placed, analysis.Facets, margins, target, analysis.Settings.Encoding);
    for (const PlannedColumn& plan : plans_)
      cells_.emplace_back(plan, placed[plan.Column.Facet], analysis.Elements, analysis.Settings.Encoding);
  }

  bool Empty() const { return plans_.empty(); }

  void Write(ReportWriter& report, Console& console) {
    TableFrame frame(report, analysis_.Settings, console);
    frame.BeginColumns({HeadLine(false)}, RuleTemplate());
    bool expanded = false;
    for (std::int32_t line = 0; line <= axis_.LastLine; ++line) {
      for (RulerCells& cells : cells_) cells.StartLine(line);
      frame.WriteRow(MeasureRow(line));
      for (; Unfinished(); expanded = true) frame.WriteRow(ContinuationRow());
    }
    frame.WriteRule(RuleKind::Middle);
    frame.WriteRow(HeadLine(true));
    frame.WriteRule(RuleKind::Bottom);
    if (expanded)
      report.WriteTableLine(
          WithVerticals("Metric maintained by + or |.  Spacing expanded with : to show all elements."));
    report.WriteTableLine("");
    for (std::size_t at = 0; at < scales_.size(); ++at)
      report.WriteTableLine(ScaleName(at) + ": Model = " + ModelText(analysis_.Scales.ScaleOrder[at], analysis_));
  }

 private:
  static std::string ScaleName(std::size_t at) { return "S." + BareText(static_cast<std::int64_t>(at) + 1); }

  void AddScales(bool withLabels, ResponseKernel& kernel) {
    const std::vector<ScaleNumber>& order = analysis_.Scales.ScaleOrder;
    const std::size_t count = std::min(order.size(), kMostScaleColumns);
    for (std::size_t at = 0; at < count; ++at) {
      const std::string heading = order.size() == 1 ? OnlyScaleHeading(order[at]) : ScaleName(at);
      scales_.emplace_back(order[at], heading, withLabels, axis_, analysis_, kernel);
    }
  }

  std::string OnlyScaleHeading(ScaleNumber scale) const {
    const StatementNumber statement = analysis_.Scales.Scales[scale].ScaleModel;
    const DefinitionNumber definition = analysis_.Models.Statements[statement].ModelDefinition;
    const std::string name = definition == kNoDefinition ? "" : analysis_.Models.Definitions[definition].Name;
    return name.empty() ? "Scale" : name;
  }

  std::string RuleTemplate() const {
    const auto stretch = [](int width) { return std::string(static_cast<std::size_t>(width), '-') + "x"; };
    std::string rule = "x" + stretch(measureWidth_);
    for (const PlannedColumn& plan : plans_) rule += stretch(plan.ColumnWidth + 2);
    for (const ScaleColumn& scale : scales_) rule += stretch(scale.Width());
    return rule;
  }

  std::string HeadLine(bool foot) const {
    std::vector<std::string> heads;
    for (const PlannedColumn& plan : plans_) {
      const Facet& facet = analysis_.Facets[plan.Column.Facet];
      std::string head = foot ? ColumnLegend(plan) : std::string();
      if (head.empty()) head = (facet.ShowsPositive() ? "+" : "-") + facet.FacetLabel;
      heads.push_back(PadToWidth(head, plan.ColumnWidth + 2, analysis_.Settings.Encoding));
    }
    for (const ScaleColumn& scale : scales_) heads.push_back(scale.HeadCell());
    return Row(CutOrPad("Measr", measureWidth_), kPlainRow, heads);
  }

  std::string MeasureRow(std::int32_t line) {
    std::vector<std::string> cells = FacetCells();
    for (ScaleColumn& scale : scales_) cells.push_back(scale.NextCell());
    const std::optional<std::int32_t> number = axis_.NumberAt(line);
    if (!number) return Row(CutOrPad("", measureWidth_), kPlainRow, cells);
    return Row(RightJustified(BareText(*number), measureWidth_ - 1) + " ", *number == 0 ? kZeroRow : kNumberRow, cells);
  }

  std::string ContinuationRow() {
    std::vector<std::string> cells = FacetCells();
    for (const ScaleColumn& scale : scales_) cells.push_back(scale.BlankCell());
    return Row(CutOrPad("", measureWidth_), kContinuedRow, cells);
  }

  std::vector<std::string> FacetCells() {
    std::vector<std::string> cells;
    for (RulerCells& column : cells_) cells.push_back(column.NextCell());
    return cells;
  }

  static std::string Row(const std::string& measure, const RowEdges& edges, const std::vector<std::string>& cells) {
    std::string row = edges.Left + measure;
    for (const std::string& cell : cells) row.append(1, edges.Between).append(cell);
    return row + edges.Right;
  }

  bool Unfinished() const {
    return std::any_of(cells_.begin(), cells_.end(), [](const RulerCells& column) { return column.Unfinished(); });
  }

  const RulerAxis& axis_;
  const Analysis& analysis_;
  int measureWidth_;
  std::vector<PlannedColumn> plans_;
  std::vector<RulerCells> cells_;
  std::vector<ScaleColumn> scales_;
};

}  // namespace

void WriteRuler(const RulerColumns& columns, const Yardstick& yardstick, const RulerAxis& axis,
                std::span<const ElementIndex> elements, const Analysis& analysis, ResponseKernel& kernel,
                ReportWriter& report, Console& console) {
  report.WriteTableLine(EchoLine(columns, yardstick, axis));
  const PlacedFacets placed = PlaceElements(elements, columns, axis, yardstick.ExtremesByMeasure, analysis);
  Ruler ruler(columns, axis, placed, yardstick.Columns, analysis, kernel);
  if (!ruler.Empty()) ruler.Write(report, console);
}

}  // namespace tessaly
