// The columns of a Wright map that show the elements of a facet.
#pragma once

#include <memory>
#include <vector>

#include "graphs/map_column.h"
#include "reports/ruler_elements.h"
#include "state/analysis.h"

namespace tessaly {

/// The column `column` of elements that `placed` has on the axis `ruler`, which `axis` shows. Extreme elements stand at
/// the ends of the axis, or with `extremesByMeasure` at their estimates; what lies beyond the axis stands at its end.
/// Labels and numbers stand at the measures; stars become a histogram, counts one number for each stretch of the axis.
std::unique_ptr<MapColumn> MakeFacetColumn(const FacetColumn& column, const PlacedFacet& placed, const RulerAxis& ruler,
                                           const MapAxis& axis, bool extremesByMeasure, const Analysis& analysis);

}  // namespace tessaly
