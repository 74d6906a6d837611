// `Models=`: collects the model statements, which are understood when all facets and scales are known.
#pragma once

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Reads `Models=`, one statement or a block. Throws `Halt{FacetsFirst}`, and `Halt{ExtraSpecificationInvalid}` in the
/// extra specifications.
void ReadModels(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
