// The observations that fit their expectation worst.
#pragma once

#include <cstdint>
#include <vector>

#include "data/observation_pass.h"
#include "estimate/observation_fit.h"

namespace tessaly {

/// One unexpected observation, on the raw categories' count.
struct UnexpectedResponse {
  std::int32_t Category = 0;
  std::int32_t Score = 0;
  float Expected = 0;
  /// Standardized residual, held at 9 in size.
  float ZScore = 0;
  /// Place in the data, from 1.
  std::int64_t ObservationIndex = 0;
  /// Element (record index) of each position, from position 1 on; 0 for none.
  std::vector<ElementIndex> Elements;
};

/// Keeps the `most` observations of largest |z| among those of at least `least`: of equal ones the positive come first,
/// then those that stand first in the data.
class UnexpectedList {
 public:
  UnexpectedList(float least, std::int32_t most) : least_(least), most_(static_cast<std::size_t>(most)) {}

  /// Takes an observation whose elements are all measurable.
  void AddUnexpected(const Observation& obs, const ObservationFit& fit);

  /// In descending order. Throws `Stopped`.
  std::vector<UnexpectedResponse> Sorted(RunControl& control) const;
  float Least() const { return least_; }
  std::int32_t Most() const { return static_cast<std::int32_t>(most_); }
  /// Observations of at least that |z| for which there was no room.
  std::int64_t DroppedCount() const { return droppedCount_; }

 private:
  /// Whether `a` stands before `b`.
  static bool Worse(const UnexpectedResponse& a, const UnexpectedResponse& b);

  float least_;
  std::size_t most_;
  std::int64_t droppedCount_ = 0;
  /// A heap with the mildest on top.
  std::vector<UnexpectedResponse> heap_;
};

/// The list of a finished analysis for other limits, from one pass over the observations.
UnexpectedList CollectUnexpected(float least, std::int32_t most, const Analysis& analysis, ObservationStore& store,
                                 ResponseKernel& kernel, RunControl& control, Console& console);

}  // namespace tessaly
