// Probabilities of test statistics.
#pragma once

#include <cstdint>

namespace tessaly {

/// Probability that a unit normal deviate is above `z` (Abramowitz & Stegun 7.1.28; error below 3e-7).
double NormalTail(double z);

/// Probability that a chi-square of `freedom` degrees of freedom is above `chi`, by the normal approximation of Peizer
/// & Pratt (1968). 1 if `chi` is not above 0 or `freedom` is below 1.
float ChiSquareProbability(double chi, double freedom);

/// Two-sided probability of Student's t with `freedom` degrees of freedom (Abramowitz & Stegun 26.7.3, 26.7.4). 0 if
/// `freedom` is below 1.
float StudentProbability(double t, std::int64_t freedom);

}  // namespace tessaly
