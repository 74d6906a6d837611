// With which elements each element was observed: the facts of `Esubtotals=`.
#pragma once

#include <cstdint>
#include <vector>

#include "data/observation_pass.h"
#include "state/facets.h"
#include "state/indexes.h"

namespace tessaly {

/// For each element and each facet the one element of that facet with which the element was observed. Fed from an
/// `ObservationPass`. Takes 4 bytes for each element and facet: make it only where it is asked for.
class ElementCrossReference {
 public:
  /// An entry for several elements of a facet.
  static constexpr ElementIndex kSeveral{-1};

  /// Throws `Halt{TooManyElements}` if there is not enough memory.
  ElementCrossReference(std::int32_t elementCount, std::int32_t facetCount, const FieldMap& fields);

  /// Enters each element of the observation for the facets of the other positions.
  void Add(const Observation& observation);

  /// The element (record index) of `facet` with which `element` was observed: `kNoElement` for none, `kSeveral`.
  ElementIndex Entry(ElementIndex element, FacetNumber facet) const { return entries_[At(element, facet)]; }

 private:
  std::size_t At(ElementIndex element, FacetNumber facet) const {
    return static_cast<std::size_t>(element.value - 1) * facetCount_ + static_cast<std::size_t>(facet.value - 1);
  }
  void Enter(ElementIndex element, FacetNumber facet, ElementIndex other);

  std::size_t facetCount_;
  /// By position; entry 0 is position 1.
  std::vector<FacetNumber> facets_;
  std::vector<ElementIndex> entries_;
};

}  // namespace tessaly
