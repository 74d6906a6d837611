// Which elements make up the disjoint subsets of the data.
#pragma once

#include <string>
#include <vector>

#include "state/analysis.h"

namespace tessaly {

/// The elements of each subset, ascending; entry 0 is that of subset 1. An element may be in several of them, and one
/// that parts nothing is in none.
std::vector<std::vector<ElementIndex>> ElementsBySubset(const SubsetTable& subsets);

/// The members of subset `number`, facet by facet: the line "Subset n:", then for each facet its number and label and
/// the numbers and labels of its elements, broken into lines of at most 80 columns where the labels allow it.
std::vector<std::string> SubsetLines(std::int32_t number, const std::vector<ElementIndex>& members,
                                     const Analysis& analysis);

}  // namespace tessaly
