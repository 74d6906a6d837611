#include "data/observation_layout.h"

#include <bit>
#include <cstring>

namespace tessaly {

static_assert(std::endian::native == std::endian::little, "work files are written low byte first");

void PackObservation(const ObservationRecord& record, unsigned char* bytes) {
  std::memcpy(bytes, &record.ObsCell.value, 4);
  std::memcpy(bytes + 4, &record.Replication, 4);
  std::memcpy(bytes + 8, &record.ObsResponse, 2);
}

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

void ElementLayout::Pack(const ElementIndex* elements, unsigned char* bytes) const {
  for (const Slot& slot : slots_) {
    const std::int32_t element = elements[slot.At].value;
    auto place = static_cast<std::uint32_t>(element > 0 ? element - slot.FirstElement + 1 : 0);
    for (std::int32_t i = 0; i < slot.Width; ++i, place >>= 8) *bytes++ = static_cast<unsigned char>(place);
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
