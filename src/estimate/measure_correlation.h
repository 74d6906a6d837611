// Point-measure correlation of an element, observed and expected.
#pragma once

#include "data/observation_pass.h"
#include "model/response_moments.h"

namespace tessaly {

/// Weighted sums over the observations of one element: x the net measure of the observation (logit), y its response and
/// e the expected response as parts of the top category, v the variance of the response on that scale. In double:
/// spreads are small differences of large sums.
struct CorrelationSums {
  double SumX = 0;
  double SumXX = 0;
  double SumY = 0;
  double SumYY = 0;
  double SumXY = 0;
  double SumW = 0;
  double SumE = 0;
  double SumEE = 0;
  double SumV = 0;
  double SumXE = 0;

  CorrelationSums() = default;
  /// Of one observation.
  CorrelationSums(const Observation& obs, const ResponseMoments& moments);
  CorrelationSums& operator+=(const CorrelationSums& other);
  /// Correlation of y with x; 0 where one of them does not vary.
  float PointMeasure() const;
  /// The same as the model expects it: the correlation of e with x, its spread widened by the model variance.
  float ExpectedPointMeasure() const;

 private:
  double SpreadX() const;
};

}  // namespace tessaly
