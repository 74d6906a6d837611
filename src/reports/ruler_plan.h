// How wide the facet columns of a ruler are, and how many elements stand side by side in them.
#pragma once

#include <cstdint>
#include <vector>

#include "reports/ruler_elements.h"
#include "reports/vertical_spec.h"
#include "state/facets.h"
#include "support/bytes.h"

namespace tessaly {

/// Report columns of a label, or a heading, that a ruler shows at most.
constexpr int kWidestRulerLabel = 200;

/// A facet column as it is drawn. Widths are report columns; the cell has a blank on both sides and a line behind it.
struct PlannedColumn {
  FacetColumn Column;
  /// Elements on the line that has most of them; at least 1.
  std::int32_t MostOnLine = 1;
  /// What an element takes, with the blanks that part it from the next one.
  int SlotWidth = 0;
  /// How many of these are blanks.
  int SlotGap = 0;
  /// Elements in a line.
  std::int32_t Across = 1;
  /// Elements that a star stands for.
  std::int32_t PerStar = 1;
  int ColumnWidth = 0;

  /// Whether each element has its own text.
  bool ListsElements() const { return Column.Kind == ColumnKind::Labels || Column.Kind == ColumnKind::Numbers; }
};

/// The columns of `columns` that have an element to show. `margins` is the width of everything else in the ruler; if
/// the whole exceeds `target` (0: any width is welcome), columns of labels and numbers are narrowed, down to one
/// element in a line.
std::vector<PlannedColumn> PlanColumns(const RulerColumns& columns, const PlacedFacets& placed,
                                       const FacetTable& facets, int margins, std::int32_t target,
                                       const TextEncoding& encoding);

/// What stands under a column in place of its heading; empty for a column that repeats its heading there.
std::string ColumnLegend(const PlannedColumn& column);

}  // namespace tessaly
