#include "data/observation_layout.h"

#include <cstring>

namespace tessaly {

namespace {

std::int32_t PositionWidth(std::int32_t elementCount) {
  if (elementCount == 0) return 0;
  if (elementCount <= 0xFF) return 1;
  if (elementCount <= 0xFFFF) return 2;
  if (elementCount <= 0xFFFFFF) return 3;
  return 4;
}

}  // namespace

ElementLayout::ElementLayout(const FacetTable& facets, const FieldMap& fields) : positions_(fields.ActiveFacetCount()) {
  for (const PositionNumber position : fields.Positions.all()) {
    const Facet& facet = facets[fields.Positions[position].PositionFacet];
    const std::int32_t width = PositionWidth(facet.FacetElementCount);
    if (width == 0) continue;
    slots_.push_back({position.value - 1, length_, width, facet.FacetFirstElement.value});
    length_ += width;
  }
}

void ElementLayout::Unpack(const unsigned char* bytes, ElementIndex* elements) const {
  for (const Slot& slot : slots_) {
    std::uint32_t place = 0;
    std::memcpy(&place, bytes + slot.Offset, static_cast<std::size_t>(slot.Width));
    elements[slot.At].value = place == 0 ? 0 : static_cast<std::int32_t>(place) + slot.FirstElement - 1;
  }
}

}  // namespace tessaly
