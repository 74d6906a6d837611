// From the block of `Labels=` to the facet and element tables.
#pragma once

#include <vector>

#include "spec/spec_context.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Builds facets and elements. Throws `Halt` and `FatalError` as `ListElements`, `DescribeElements` and
/// `AnchorElements` do.
void LoadLabels(const std::vector<StoredLine>& block, Analysis& analysis, Console& console);

}  // namespace tessaly
