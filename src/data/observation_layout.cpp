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

ObservationRecord UnpackObservation(const unsigned char* bytes) {
  ObservationRecord record;
  std::memcpy(&record.ObsCell.value, bytes, 4);
  std::memcpy(&record.Replication, bytes + 4, 4);
  std::memcpy(&record.ObsResponse, bytes + 8, 2);
  return record;
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
    slots_.push_back({position.value - 1, width, facet.FacetFirstElement.value});
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
    std::uint32_t place = bytes[0];
    if (slot.Width > 1) place |= std::uint32_t{bytes[1]} << 8;
    if (slot.Width > 2) place |= std::uint32_t{bytes[2]} << 16;
    if (slot.Width > 3) place |= std::uint32_t{bytes[3]} << 24;
    bytes += slot.Width;
    elements[slot.At].value = place == 0 ? 0 : static_cast<std::int32_t>(place) + slot.FirstElement - 1;
  }
}

}  // namespace tessaly
