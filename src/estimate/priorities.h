// The order in which facets are estimated.
#pragma once

#include <cstdint>
#include <optional>

#include "state/facets.h"

namespace tessaly {

/// Takes the priorities of the facets with elements one at a time, ascending from 1; priority 0 has its turn only if no
/// facet has one above 0.
class Priorities {
 public:
  explicit Priorities(const FacetTable& facets) : facets_(facets) {}

  /// The next priority, or nothing when none is left.
  std::optional<std::int32_t> Next();
  /// How often a priority has followed another.
  std::int32_t PriorityChanges() const { return changes_; }

 private:
  enum class State { Before, Running, Finished };

  const FacetTable& facets_;
  State state_ = State::Before;
  std::int32_t current_ = 0;
  std::int32_t changes_ = 0;
};

}  // namespace tessaly
