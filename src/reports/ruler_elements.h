// Which elements stand on which line of a ruler.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "reports/ruler_axis.h"
#include "reports/vertical_spec.h"
#include "state/analysis.h"

namespace tessaly {

struct PlacedElement {
  std::int32_t Line = 0;
  ElementIndex Element = kNoElement;
};

/// The elements of a facet on a ruler, from the top line down.
struct PlacedFacet {
  /// On each line by element number.
  std::vector<PlacedElement> ByNumber;
  /// On each line by label, then by element number; only if a column shows labels.
  std::vector<PlacedElement> ByLabel;
  /// Elements on the line that has most of them.
  std::int32_t MostOnLine = 0;
};

/// Those of `elements` (ascending) that belong to the facet.
std::span<const ElementIndex> ElementsOf(const Facet& facet, std::span<const ElementIndex> elements);

using PlacedFacets = Table<FacetNumber, PlacedFacet>;

/// Places those of `elements` (ascending) that belong to facets of `columns`. Elements without a measure stay out, and
/// with `Omit-unobserved=` so do anchored ones without observations. Extreme elements stand at the ends of the axis, or
/// with `extremesByMeasure` at their estimates.
PlacedFacets PlaceElements(std::span<const ElementIndex> elements, const RulerColumns& columns, const RulerAxis& axis,
                           bool extremesByMeasure, const Analysis& analysis);

}  // namespace tessaly
