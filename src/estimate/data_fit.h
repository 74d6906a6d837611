// How the data as a whole fit.
#pragma once

#include <array>
#include <cstdint>

#include "data/observation_pass.h"
#include "estimate/moments.h"
#include "estimate/observation_fit.h"

namespace tessaly {

/// Sums over all observations of the fit pass.
struct DataFit {
  /// Weighted moments of observed raw response, reported response, expected response, residual, standardized residual.
  enum Item { Response, Reported, Expected, Residual, StandardizedResidual, ItemCount };
  std::array<RunningMoments, ItemCount> Summary;
  /// Some weight was other than 1.
  bool WeightedData = false;
  /// Range of the combined measures (logit) of these observations; it always holds 0.
  float LowestMeasure = 0;
  float HighestMeasure = 0;
  /// Sum of w ln P(x).
  double LogLikelihood = 0;
  /// Moments of the raw response by `ReadStatus`.
  static constexpr std::int32_t kStatusOffset = 10;
  std::array<RunningMoments, 21> ResponsesByStatus;
  /// Parameters estimated from the responses of each `ReadStatus`.
  std::array<std::int32_t, 21> ParameterCount{};

  /// Sum of the weights of the responses in the moments.
  double Weight() const { return Summary[Response].N; }
  /// Takes an observation whose elements are all measurable into the moments.
  void AddToSummary(const Observation& obs, const ObservationFit& fit);

  static std::size_t Row(ReadStatus status) {
    const std::int32_t row = static_cast<std::int32_t>(status) + kStatusOffset;
    return static_cast<std::size_t>(row);
  }
};

}  // namespace tessaly
