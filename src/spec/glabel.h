// `Glabel=`: labels of element groups.
#pragma once

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Reads `Glabel=`, one label or a block. The first label of a group stands. Throws `Halt{InvalidGlabel}`, and
/// `Halt{ExtraSpecificationInvalid}` for a block in the extra specifications.
void ReadGlabel(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
