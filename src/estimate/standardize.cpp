#include "estimate/standardize.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

constexpr double kCap = 9.0;

float Capped(double value) {
  return static_cast<float>(std::clamp(value, -kCap, kCap));
}

}  // namespace

FitStatistic Standardize(float n, double q, float sum, bool exact, float smallest) {
  FitStatistic fit;
  if (!(n > 0)) return fit;
  const double weight = static_cast<double>(n);
  const double squares = static_cast<double>(sum);
  fit.MeanSquare = Capped(squares / std::max(weight, static_cast<double>(smallest) * squares));
  if (!(q > 0)) return fit;
  const double h = std::sqrt(q) / (3 * weight);
  double z = (std::cbrt(squares / weight) - 1) / h;
  if (exact) z += h;
  fit.ZStd = Capped(z);
  fit.Freedom = static_cast<float>(2 * weight * weight / q);
  return fit;
}

}  // namespace tessaly
