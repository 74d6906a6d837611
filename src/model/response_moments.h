// What one response is worth at its model expectation: residual, variance, kurtosis.
#pragma once

#include <cstdint>

#include "model/response_kernel.h"

namespace tessaly {

/// Statistics of one response x (ordinal) at expected score E. Moments are central, over the category probabilities.
struct ResponseMoments {
  float ExpectedResponse = 0;
  /// V.
  float ResponseVariance = 0;
  /// x - E.
  float ResponseResidual = 0;
  float ResidualSquare = 0;
  /// (x - E)^2 / V.
  float ResidualSquareZ = 0;
  /// C / V^2, with C the fourth central moment.
  float KurtosisRatio = 0;
  /// C - V^2: the variance of (x - E)^2.
  float ResidualVarianceTerm = 0;
};

/// The statistics of response `ordinal`, straight after `kernel.CategoryProbabilities` gave `expected` at `top`
/// (Wright & Masters 1982, chapter 5). Variances in divisors are at least 1e-9.
ResponseMoments ObservationMoments(const ResponseKernel& kernel, std::int32_t top, std::int32_t ordinal,
                                   float expected);

}  // namespace tessaly
