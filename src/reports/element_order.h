// The order of the rows of a measurement table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "state/elements.h"
#include "state/run_control.h"

namespace tessaly {

/// Some elements of a facet, all or those of a group, in the order of an arrangement: letters A label, F fit
/// mean-squares, Z and T standardized fit, M measure, N number, P correlation; capitals ascending, small letters
/// descending, the element number last. Unobserved elements are left out; with `omitUnobserved` so are those without a
/// count. Throws `Stopped`.
std::vector<ElementIndex> SortElements(const std::vector<ElementIndex>& members, const ElementTable& elements,
                                       std::string_view letters, bool omitUnobserved, RunControl& control);

}  // namespace tessaly
