// Numbers for combinations of elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "data/observation_pass.h"
#include "state/analysis.h"

namespace tessaly {

/// Gives observations a key that is equal if, and only if, they hold the same elements in some positions: what is
/// rated, whoever rates it.
class ThingKeys {
 public:
  /// `matching`: the positions, from 0. `observations` is at least the number of keys that are asked for, below 2^31.
  ThingKeys(const std::vector<std::size_t>& matching, const Analysis& analysis, std::int64_t observations);

  std::uint64_t KeyOf(const Observation& obs);

 private:
  struct Digit {
    std::size_t Position;
    /// Records are counted from here.
    std::int32_t FirstElement;
    /// Elements of the position's facet, and no element.
    std::uint64_t Values;
    /// The key so far must be replaced by a smaller one before this digit finds room.
    bool Renumber;
  };

  std::vector<Digit> digits_;
  /// By digit that renumbers: the keys met so far.
  std::vector<std::unordered_map<std::uint64_t, std::uint64_t>> numbers_;
};

}  // namespace tessaly
