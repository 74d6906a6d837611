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

/// V as the estimation takes it, sum of k^2 P(k) - E^2 over k = `last`..1, straight after
/// `kernel.CategoryProbabilities` gave `expected` at `top`. E - E^2 for a dichotomy.
inline float EstimationVariance(const ResponseKernel& kernel, std::int32_t top, std::int32_t last, float expected) {
  if (top <= 1) return expected - expected * expected;
  float squares = 0;
  for (std::int32_t k = last; k >= 1; --k) squares += static_cast<float>(k * k) * kernel.Probability(k);
  return squares - expected * expected;
}

/// The statistics of response `ordinal` on a scale of `top`, by the probabilities of its categories and the `expected`
/// category (Wright & Masters 1982, chapter 5). Variances in divisors are at least 1e-9.
ResponseMoments ObservationMoments(const Probabilities& probabilities, std::int32_t top, std::int32_t ordinal,
                                   float expected);

}  // namespace tessaly
