// Centering and anchors that the data cannot go with.
#pragma once

#include <string>
#include <vector>

#include "state/analysis.h"

namespace tessaly {

/// What is told of constraints under which estimates would be forced or run away; nothing if they are in order. Call it
/// when the counts of categories and the statuses of elements are final.
///
/// Statements that turn some positions round (`-`) against each other: where it is turned, the origin of a facet by
/// whose elements the statements are told apart moves the other way, so that its mean is no free choice. And anchored
/// thresholds of categories without responses beside free ones: those can move until nothing is expected there.
std::vector<std::string> ConstraintConflicts(const Analysis& analysis);

}  // namespace tessaly
