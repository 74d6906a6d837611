// Running mean and spread of one value.
#pragma once

#include <cmath>

#include "support/number_text.h"

namespace tessaly {

/// Mean and sum of squared deviations, updated value by value (Welford 1962), with weights where they are given.
struct RunningMoments {
  double N = 0;
  double Mean = 0;
  double Squares = 0;

  void Add(double value) {
    const double n = N + 1;
    const double d = value - Mean;
    Squares += d * d * N / n;
    Mean += d / n;
    N = n;
  }
  /// Ignored unless `weight` is above 0.
  void AddWeighted(double value, double weight) {
    if (!(weight > 0)) return;
    const double n = weight + N;
    const double d = value - Mean;
    Squares += d * d * (weight * N) / n;
    Mean += weight * d / n;
    N = n;
  }
  /// Population standard deviation; the variance is taken as at least 1e-9. 0 without values.
  double StandardDeviation() const { return N > 0 ? std::sqrt(SafeFloor64(Squares / N)) : 0; }
};

}  // namespace tessaly
