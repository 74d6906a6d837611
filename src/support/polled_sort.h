// Long sorts that can be left.
#pragma once

#include <algorithm>
#include <cstdint>

namespace tessaly {

/// Sorts `items` by `before`, as `std::sort` does, and calls `poll` every quarter of a million comparisons. What `poll`
/// throws passes through and leaves the items in no order, some of them perhaps moved from.
template <class Items, class Before, class Poll>
void PolledSort(Items& items, const Before& before, const Poll& poll) {
  constexpr std::uint32_t kComparisonsBetweenPolls = 1U << 18;
  std::uint32_t comparisons = 0;
  std::sort(items.begin(), items.end(), [&](const auto& a, const auto& b) {
    if (++comparisons % kComparisonsBetweenPolls == 0) poll();
    return before(a, b);
  });
}

}  // namespace tessaly
