// Counts of the data phase.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace tessaly {

/// What became of the data lines and responses.
struct DataCounters {
  /// Without the skipped ones.
  std::int64_t DataLines = 0;
  /// Lines that `Invalid lines=` passes over; counted nowhere else.
  std::int64_t SkippedLines = 0;
  std::int64_t BlankLines = 0;
  std::int64_t MissingCodeCount = 0;
  std::int64_t MissingNullCount = 0;
  std::int64_t NoReplicationCount = 0;
  std::int64_t InvalidCount = 0;
  std::int64_t NegativeCount = 0;
  std::int64_t InvalidModelCount = 0;
  std::int64_t ResponsesFound = 0;
  std::int64_t ValidResponses = 0;
  std::int64_t UnspecifiedCount = 0;
};

/// An element reference that `Labels=` does not declare.
struct UnspecifiedElement {
  std::int32_t FacetNumber = 0;
  std::string Label;
  /// -1 for a label without number.
  std::int32_t ElementNumber = -1;

  friend auto operator<=>(const UnspecifiedElement&, const UnspecifiedElement&) = default;
};

}  // namespace tessaly
