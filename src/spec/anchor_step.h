// Anchor values and group numbers of elements.
#pragma once

#include <string>

#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// What an element of a facet's type makes of anchor and group texts: status, measure (logit) and group. `groups` are
/// the group texts as written, or empty for none. Warns of values without group in a group-anchored facet. Throws
/// `Halt{InvalidGroup}`, and `FatalError` for a value beyond `Hardware=`.
void AnchorElements(const Table<ElementIndex, std::string>& groups, Analysis& analysis, Console& console);

}  // namespace tessaly
