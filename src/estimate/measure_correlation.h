// Point-measure correlation of an element, observed and expected.
#pragma once

#include "data/observation_pass.h"
#include "model/response_moments.h"

namespace tessaly {

/// Weighted sums over the observations of one element: x the net measure of the observation (logit), y its response and
/// e the expected response as parts of the top category, v the variance of the response on that scale.
struct CorrelationSums {
  float SumX = 0;
  float SumXX = 0;
  float SumY = 0;
  float SumYY = 0;
  float SumXY = 0;
  float SumW = 0;
  float SumE = 0;
  float SumEE = 0;
  float SumV = 0;
  float SumXE = 0;

  void Add(const Observation& obs, const ResponseMoments& moments);
  /// Correlation of y with x; 0 where one of them does not vary.
  float PointMeasure() const;
  /// The same as the model expects it: the correlation of e with x, its spread widened by the model variance.
  float ExpectedPointMeasure() const;

 private:
  double SpreadX() const;
};

}  // namespace tessaly
