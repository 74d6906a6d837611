// `Rating scale=`: category labels, thresholds and recodings of a named scale.
#pragma once

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Reads a block `Rating scale=` into a new definition. Throws `Halt{InvalidScaleType}` (with the code as the line),
/// `Halt{InvalidCategory}`, `Halt{DuplicateCategory}`, `Halt{RecodeRangeNotNumeric}`,
/// `Halt{TooManyModels}` if all blocks together are too large, and `Halt{ExtraSpecificationInvalid}` in the extra
/// specifications.
void ReadRatingScale(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
