// Takes out of the search for subsets what cannot part the data.
#pragma once

#include "estimate/subset_lists.h"
#include "state/elements.h"
#include "state/facets.h"

namespace tessaly {

/// A difference between subsets that a centered facet, an anchored group or a facet all of whose elements share a
/// subset resolves is no difference. Drops the elements of such facets and groups, joins within each facet the subsets
/// that have an element in common, and drops elements that then belong to all subsets of their facet. True if anything
/// changed.
bool ConsolidateSubsets(const FacetTable& facets, const ElementTable& elements, SubsetLists& lists);

}  // namespace tessaly
