// The subsets into which the data fall apart.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "state/indexes.h"

namespace tessaly {

/// What is said as long as nobody has looked for subsets to the end.
constexpr std::string_view kSubsetsNotVerified = "Warning (5)! Subset connection not verified";

/// Elements whose measures cannot be compared, because nothing in the data connects them.
struct SubsetTable {
  /// Above 1 if measures have different origins.
  std::int32_t SubsetCount = 0;
  /// By element: the subsets to which it belongs, 1..SubsetCount; none for an element that parts nothing. An empty
  /// table if all data are connected.
  Table<ElementIndex, std::vector<std::int32_t>> ElementSubsets;

  bool Disjoint() const { return SubsetCount > 1; }
};

}  // namespace tessaly
