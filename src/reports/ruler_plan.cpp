#include "reports/ruler_plan.h"

#include <algorithm>
#include <string>

#include "support/number_text.h"

namespace tessaly {

namespace {

/// The blank on each side of a cell and the line behind it.
constexpr int kColumnFrame = 3;
/// What elements of a line may take where no width is asked for.
constexpr int kUsualWidth = 200;
constexpr std::int32_t kFewestAcross = 2;
constexpr std::int32_t kMostStars = 10;
/// Headings of this length and more are cut to `kCutHeading` if a width is asked for; when columns are narrowed,
/// shorter ones are too.
constexpr int kLongHeading = 9;
constexpr int kNarrowedHeading = 5;
constexpr int kCutHeading = 5;

/// A column while its width is being found.
class Planner {
 public:
  Planner(const FacetColumn& column, std::int32_t mostOnLine, const Facet& facet, bool targeted,
          const TextEncoding& encoding)
      : headingLength_(std::min(DisplayLength(facet.FacetLabel, encoding), kWidestRulerLabel)), targeted_(targeted) {
    plan_.Column = column;
    plan_.MostOnLine = mostOnLine;
    switch (column.Kind) {
      case ColumnKind::Labels:
        List(std::min(facet.FacetLabelWidth, kWidestRulerLabel), 2);
        break;
      case ColumnKind::Numbers:
        List(facet.FacetNumberWidth, 1);
        break;
      case ColumnKind::Stars:
        plan_.PerStar = (mostOnLine + kMostStars - 1) / kMostStars;
        plan_.ColumnWidth = (mostOnLine + plan_.PerStar - 1) / plan_.PerStar;
        break;
      case ColumnKind::Count:
        plan_.ColumnWidth = static_cast<int>(BareText(mostOnLine).size());
        break;
    }
    FitHeading(kLongHeading);
  }

  const PlannedColumn& Plan() const { return plan_; }

  /// Takes an element out of the line, and more if they would exceed `room` beside the first one. Whether the width
  /// changed.
  bool Narrow(int room) {
    const int width = plan_.ColumnWidth;
    const std::int32_t held = room < 0 ? 1 : room / plan_.SlotWidth + 1;
    SetAcross(std::max(std::min(plan_.Across - 1, held), 1), kNarrowedHeading);
    return plan_.ColumnWidth != width;
  }

 private:
  void List(int elementWidth, int gap) {
    plan_.SlotWidth = elementWidth + gap;
    plan_.SlotGap = gap;
    SetAcross(std::min(std::max(kUsualWidth / plan_.SlotWidth, kFewestAcross), plan_.MostOnLine), kLongHeading);
  }

  void SetAcross(std::int32_t across, int longHeading) {
    plan_.ColumnWidth = plan_.SlotWidth * across - plan_.SlotGap;
    FitHeading(longHeading);
    plan_.Across = std::clamp((plan_.ColumnWidth + plan_.SlotGap) / plan_.SlotWidth, 1, plan_.MostOnLine);
  }

  /// A heading has its sign in front of it and both blanks of the cell, so it needs a column less than its length.
  void FitHeading(int longHeading) {
    const bool cut = targeted_ && headingLength_ >= longHeading;
    const int wanted = cut ? std::min(kCutHeading, headingLength_ - 1) : headingLength_ - 1;
    plan_.ColumnWidth = std::max(plan_.ColumnWidth, wanted);
    plan_.ColumnWidth = std::max(plan_.ColumnWidth, static_cast<int>(ColumnLegend(plan_).size()) - 2);
  }

  PlannedColumn plan_;
  int headingLength_;
  bool targeted_;
};

/// Narrows columns until the ruler is no wider than `target` or nothing helps.
void FitTarget(std::vector<Planner>& columns, int margins, std::int32_t target) {
  int fixed = margins;
  int baseWidths = 0;
  for (const Planner& column : columns) {
    const PlannedColumn& plan = column.Plan();
    fixed += kColumnFrame + (plan.ListsElements() ? 0 : plan.ColumnWidth);
    // One element; 0 in other columns.
    baseWidths += plan.SlotWidth - plan.SlotGap;
  }
  const auto listsSeveral = [](const Planner& column) { return column.Plan().Across > 1; };
  for (bool changed = true; changed && std::any_of(columns.begin(), columns.end(), listsSeveral);) {
    int total = fixed;
    for (const Planner& column : columns) total += column.Plan().ListsElements() ? column.Plan().ColumnWidth : 0;
    if (total <= target) return;
    changed = false;
    for (Planner& column : columns) {
      if (column.Plan().ListsElements() && column.Narrow(target - baseWidths - fixed)) changed = true;
    }
  }
}

}  // namespace

std::string ColumnLegend(const PlannedColumn& column) {
  if (column.Column.Kind == ColumnKind::Stars) return " * =" + GeneralText(column.PerStar);
  if (column.Column.Kind == ColumnKind::Count) return " Count";
  return {};
}

std::vector<PlannedColumn> PlanColumns(const RulerColumns& columns, const PlacedFacets& placed,
                                       const FacetTable& facets, int margins, std::int32_t target,
                                       const TextEncoding& encoding) {
  std::vector<Planner> planners;
  for (const FacetColumn& column : columns.Facets) {
    const std::int32_t mostOnLine = placed[column.Facet].MostOnLine;
    if (mostOnLine > 0) planners.emplace_back(column, mostOnLine, facets[column.Facet], target > 0, encoding);
  }
  if (target > 0) FitTarget(planners, margins, target);
  std::vector<PlannedColumn> plans;
  for (const Planner& planner : planners) plans.push_back(planner.Plan());
  return plans;
}

}  // namespace tessaly
