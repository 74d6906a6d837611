// Probabilities of test statistics.
#pragma once

#include <cstdint>

namespace tessaly {

/// Probability that a unit normal deviate is above `z` (Abramowitz & Stegun 7.1.28; error below 3e-7).
double NormalTail(double z);

/// Probability that a unit normal deviate is at least as far from 0 as `z` (Abramowitz & Stegun 7.1.26; error below
/// 2e-7).
double NormalTwoSided(double z);

/// Probability that a chi-square of `freedom` degrees of freedom is above `chi`, by the normal approximation of Peizer
/// & Pratt (1968). 1 if `chi` is not above 0 or `freedom` is below 1.
float ChiSquareProbability(double chi, double freedom);

/// Two-sided probability of Student's t with `freedom` degrees of freedom (Abramowitz & Stegun 26.7.3, 26.7.4). 0 if
/// `freedom` is below 1.
float StudentProbability(double t, std::int64_t freedom);

/// A test of two values against each other.
struct WelchResult {
  /// Whole degrees of freedom.
  std::int64_t Freedom = 0;
  /// Two-sided.
  float Probability = 0;
};

/// The test of `t`, the difference of two values from `n1` and `n2` observations over its standard error, with error
/// variances `e1` and `e2`, which need not be equal (Welch 1947; Satterthwaite 1946). All 0 if a count is not above 1,
/// there is no error, or the counts leave double precision.
WelchResult WelchTest(double t, double n1, double n2, double e1, double e2);

}  // namespace tessaly
