// The order of the rows of a measurement table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "state/elements.h"
#include "state/facets.h"
#include "state/run_control.h"

namespace tessaly {

/// The elements of a facet in the order of an arrangement: letters A label, F fit mean-squares, Z and T standardized
/// fit, M measure, N number, P correlation; capitals ascending, small letters descending, the element number last.
/// Unobserved elements are left out; with `omitUnobserved` so are those without a count; with a `group` above 0 all
/// that are not in it. Throws `Stopped`.
std::vector<ElementIndex> SortElements(const Facet& facet, const ElementTable& elements, std::string_view letters,
                                       bool omitUnobserved, RunControl& control, std::int32_t group = 0);

}  // namespace tessaly
