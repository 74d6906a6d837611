#include "data/observation_store.h"

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

constexpr std::int32_t kObservationsPerBlock = 8192;

/// A facet table without elements still has records, of one unused byte.
std::int32_t RecordLength(const ElementLayout& layout) {
  return std::max(layout.ElementRecordLength(), 1);
}

}  // namespace

ObservationStore::ObservationStore(const std::string& folder, const ElementLayout& layout)
    : layout_(layout),
      observations_(folder, kObservationRecordLength, kObservationsPerBlock),
      elements_(folder, RecordLength(layout), kObservationsPerBlock, ElementLayout::kPackSpare) {}

ObservationStore ObservationWriter::Seal() && {
  store_.observations_.Flush();
  store_.elements_.Flush();
  return std::move(store_);
}

}  // namespace tessaly
