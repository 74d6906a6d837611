// How an observation lies in the work files.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

#include "state/facets.h"
#include "state/indexes.h"

namespace tessaly {

/// What is stored of one response besides its elements.
struct ObservationRecord {
  CellNumber ObsCell{0};
  /// Weight of the data line.
  float Replication = 1;
  /// Raw response after recoding.
  std::int16_t ObsResponse = 0;
};

static_assert(std::endian::native == std::endian::little, "work files are written low byte first");

constexpr std::int32_t kObservationRecordLength = 10;
inline void PackObservation(const ObservationRecord& record, unsigned char* bytes) {
  std::memcpy(bytes, &record.ObsCell.value, 4);
  std::memcpy(bytes + 4, &record.Replication, 4);
  std::memcpy(bytes + 8, &record.ObsResponse, 2);
}
inline ObservationRecord UnpackObservation(const unsigned char* bytes) {
  ObservationRecord record;
  std::memcpy(&record.ObsCell.value, bytes, 4);
  std::memcpy(&record.Replication, bytes + 4, 4);
  std::memcpy(&record.ObsResponse, bytes + 8, 2);
  return record;
}

/// The element record: for each position the element's place in its facet (0 for none), in as few bytes as the facet's
/// size allows, low byte first. So records are as short as the facets allow.
class ElementLayout {
 public:
  ElementLayout(const FacetTable& facets, const FieldMap& fields);

  /// Bytes of a record; 0 when no facet has elements.
  std::int32_t ElementRecordLength() const { return length_; }
  std::int32_t ActiveFacetCount() const { return positions_; }

  /// `elements[p - 1]` is the record index in position p, 0 for none. Spoils up to `kPackSpare` bytes behind the
  /// record: each place is written as four bytes, of which the next one overwrites those that are too many.
  static constexpr std::int32_t kPackSpare = 3;
  void Pack(const ElementIndex* elements, unsigned char* bytes) const {
    for (const Slot& slot : slots_) {
      const std::int32_t element = elements[slot.At].value;
      const std::int32_t place = element > 0 ? element - slot.FirstElement + 1 : 0;
      std::memcpy(bytes + slot.Offset, &place, 4);
    }
  }
  void Unpack(const unsigned char* bytes, ElementIndex* elements) const;

  /// A position whose facet has elements. Its bytes hold the place in the facet, from 1; 0 for none.
  struct Slot {
    /// From 0, as the following.
    std::int32_t At;
    std::int32_t Offset;
    std::int32_t Width;
    std::int32_t FirstElement;
  };
  /// In the order of positions.
  const std::vector<Slot>& Slots() const { return slots_; }

 private:
  std::vector<Slot> slots_;
  std::int32_t length_ = 0;
  std::int32_t positions_ = 0;
};

}  // namespace tessaly
