// Second reading of `Labels=`: what the lines say of facets and elements.
#pragma once

#include <string>
#include <vector>

#include "spec/spec_context.h"
#include "state/elements.h"
#include "state/facets.h"

namespace tessaly {

/// Sets labels, flags and priorities of facets; labels, anchor texts, weights and targets of elements. Gives the group
/// texts as written; empty if there are none.
/// Throws `Halt{InvalidTarget}`, `Halt{TargetCircular}`, and `Halt{TooManyElements}` for texts that would fill the
/// memory, with `at` at the line.
Table<ElementIndex, std::string> DescribeElements(const std::vector<StoredLine>& block, FacetTable& facets,
                                                  ElementTable& elements, std::int32_t nullElement, InputLine& at,
                                                  Console& console);

}  // namespace tessaly
