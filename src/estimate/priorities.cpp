#include "estimate/priorities.h"

namespace tessaly {

namespace {

std::optional<std::int32_t> SmallestAbove(std::int32_t priority, const FacetTable& facets) {
  std::optional<std::int32_t> smallest;
  for (const Facet& facet : facets) {
    if (!facet.HasElements() || facet.FacetPriority <= priority) continue;
    if (!smallest || facet.FacetPriority < *smallest) smallest = facet.FacetPriority;
  }
  return smallest;
}

}  // namespace

std::optional<std::int32_t> Priorities::Next() {
  if (state_ == State::Finished) return {};
  const auto next = SmallestAbove(current_, facets_);
  if (!next) {
    const bool nothingRan = state_ == State::Before;
    state_ = State::Finished;
    if (nothingRan) return 0;
    return {};
  }
  if (state_ == State::Running) ++changes_;
  state_ = State::Running;
  current_ = *next;
  return next;
}

}  // namespace tessaly
