// `Esubtotals=`: facets whose elements are told with the elements of other facets.
#pragma once

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Reads `Esubtotals=`, one target facet with its reference facets, or a block. References that are no facet are
/// ignored; lines of one target add up. Throws `Halt{FacetsFirst}`, `Halt{InvalidDvalues}` for a target that is no
/// facet, and `Halt{ExtraSpecificationInvalid}` for a block in the extra specifications.
void ReadEsubtotals(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
