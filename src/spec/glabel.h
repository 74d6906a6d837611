// `Glabel=`: labels of element groups.
#pragma once

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Reads `Glabel=`, one label or a block. The first label of a group stands; group 0 are the elements without group.
/// Throws `Halt{InvalidGlabel}` for an empty field, a number that is none or too high, and a facet beyond `Facets=` as
/// far as that is known; `Halt{ExtraSpecificationInvalid}` for a block in the extra specifications.
void ReadGlabel(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
