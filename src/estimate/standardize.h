// Mean-squares to standardized values.
#pragma once

namespace tessaly {

/// A fit statistic of one element.
struct FitStatistic {
  float MeanSquare = 1;
  /// Unit normal deviate, held at 9 in size.
  float ZStd = 0;
  /// Degrees of freedom of the mean-square; 0 when its variance is unknown.
  float Freedom = 0;
};

/// The mean-square `sum` / `n` (capped at 9) with variance `q` / n^2, standardized by the cube-root transformation
/// z = (ms^(1/3) - 1) (3 / v) + v / 3, v = sqrt(q) / n (Wilson & Hilferty 1931). Without `exact` the term v / 3 is
/// dropped.
FitStatistic Standardize(float n, double q, float sum, bool exact, float smallest);

}  // namespace tessaly
