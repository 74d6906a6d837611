// A way out of disjoint subsets: text for `Labels=` that anchors them as groups.
#pragma once

#include "output/text_output.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Proposes to group-anchor each facet whose elements are in two or more subsets at `Umean=`, one group for each
/// subset: groups that no element has yet. An element in several subsets is in the group of the first one. Tells if
/// there is no such facet. The caller opens and closes `output`.
void WriteSubsetAnchorFile(const Analysis& analysis, Console& console, TextOutput& output);

}  // namespace tessaly
