// The stored observations: written once while the data are read, then read pass after pass.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "data/observation_layout.h"
#include "data/record_file.h"

namespace tessaly {

/// Neighbouring observations as they are stored.
struct StoredRun {
  const unsigned char* Observations;
  const unsigned char* Elements;
  std::int64_t Count;
};

/// All valid observations of an analysis, on disk; one block of each file is in memory.
class ObservationStore {
 public:
  /// Number of observations.
  std::int64_t ValidResponses() const { return count_; }
  const ElementLayout& Layout() const { return layout_; }

  /// Observation `number`, from 1 to `ValidResponses()`. `elements` has room for `ActiveFacetCount` record indexes.
  ObservationRecord Read(std::int64_t number, ElementIndex* elements) {
    layout_.Unpack(elements_.Fetch(number), elements);
    return UnpackObservation(observations_.Fetch(number));
  }

  /// Observation `number` and what follows it in memory, at most `most` observations (none if that is 0). Holds until
  /// the next call.
  StoredRun Fetch(std::int64_t number, std::int64_t most) {
    if (most == 0) return {nullptr, nullptr, 0};
    const unsigned char* const observations = observations_.Fetch(number);
    const unsigned char* const elements = elements_.Fetch(number);
    return {observations, elements, std::min({most, observations_.Following(number), elements_.Following(number)})};
  }

 private:
  friend class ObservationWriter;
  ObservationStore(const std::string& folder, const ElementLayout& layout);

  ElementLayout layout_;
  RecordFile observations_;
  RecordFile elements_;
  std::int64_t count_ = 0;
};

/// Fills a store. After `Seal` there is only reading.
class ObservationWriter {
 public:
  /// Creates the work files in `folder`. Throws `Halt{WorkFileProblem}`.
  ObservationWriter(const std::string& folder, const ElementLayout& layout) : store_(folder, layout) {}

  /// Appends an observation; `elements[p - 1]` is the record index in position p, 0 for none.
  void Write(const ObservationRecord& record, const ElementIndex* elements) {
    PackObservation(record, store_.observations_.Append());
    store_.layout_.Pack(elements, store_.elements_.Append());
    ++store_.count_;
  }

  /// Flushes what is still in memory and hands over the finished store.
  ObservationStore Seal() &&;

 private:
  ObservationStore store_;
};

}  // namespace tessaly
