#include "estimate/significance.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

/// Beyond this deviate the tail is 0 in any report.
constexpr double kLargestDeviate = 14.14;
constexpr double kRootOfHalf = 0.7071067812;
constexpr double kTwoOverPi = 2 * 0.3183098862;
/// With more degrees of freedom than this Student's t is a unit normal deviate to six decimals, and its series long.
constexpr std::int64_t kManyFreedom = 1000000;
/// What an integer holds.
constexpr double kMostFreedom = 1e15;
/// Nearer than this to its centre, as a share of it, the approximation is its limit there: the formula would divide one
/// rounding error by another.
constexpr double kAtTheCentre = 1e-8;

double PeizerPrattDeviate(double chi, double freedom) {
  const double n = freedom - 1;
  const double apart = (chi - n) / n;
  if (std::fabs(apart) < kAtTheCentre) return -(1.0 / 3 + 0.08 / freedom) / std::sqrt(2 * n);
  // n ln(n / chi) + chi - n, with the logarithm of a number near 1 taken as such.
  const double u = std::sqrt(n * (apart - std::log1p(apart)));
  return (chi - freedom + 2.0 / 3 - 0.08 / freedom) * u / std::fabs(chi - n);
}

}  // namespace

double NormalTail(double z) {
  const double y = std::fabs(z) <= kLargestDeviate ? std::fabs(z) * kRootOfHalf : 10.0;
  double e = 4.30638e-05;
  for (const double coefficient : {0.0002765672, 0.0001520143, 0.0092705272, 0.0422820123, 0.0705230784, 1.0})
    e = e * y + coefficient;
  for (int squaring = 0; squaring < 4; ++squaring) e *= e;
  const double tail = 0.5 / e;
  return z < 0 ? 1 - tail : tail;
}

double NormalTwoSided(double z) {
  const double u = std::fabs(z) * kRootOfHalf;
  const double t = 1 / (1 + 0.3275911 * u);
  double polynomial = 0;
  for (const double coefficient : {1.061405429, -1.453152027, 1.421413741, -0.284496736, 0.254829592})
    polynomial = (polynomial + coefficient) * t;
  return polynomial * std::exp(-u * u);
}

float ChiSquareProbability(double chi, double freedom) {
  if (!(chi > 0) || !(freedom >= 1)) return 1;
  if (freedom == 1) return static_cast<float>(2 * NormalTail(std::sqrt(chi)));
  return static_cast<float>(NormalTail(PeizerPrattDeviate(chi, freedom)));
}

float StudentProbability(double t, std::int64_t freedom) {
  if (freedom < 1 || std::isinf(t)) return 0;
  if (freedom > kManyFreedom) return static_cast<float>(std::erfc(std::fabs(t) * kRootOfHalf));
  const auto n = static_cast<double>(freedom);
  const double a = -std::fabs(t) / std::sqrt(n);
  const double b = n / (t * t + n);
  const std::int64_t parity = freedom % 2;
  double term = 1;
  double sum = freedom == 1 ? 0 : 1;
  for (std::int64_t j = parity + 2; j <= freedom - 2; j += 2) {
    term *= b * static_cast<double>(j - 1) / static_cast<double>(j);
    if (sum + term == sum) break;
    sum += term;
  }
  const double probability = parity == 1 ? 1 + kTwoOverPi * (std::atan(a) + b * a * sum) : 1 + std::sqrt(b) * a * sum;
  return static_cast<float>(std::max(probability, 0.0));
}

WelchResult WelchTest(double t, double n1, double n2, double e1, double e2) {
  if (!(n1 > 1) || !(n2 > 1)) return {};
  const double divisor = e2 * e2 * (n1 - 1) + e1 * e1 * (n2 - 1);
  if (!(divisor > 0)) return {};
  const double freedom = std::trunc((e1 + e2) * (e1 + e2) * (n1 - 1) * (n2 - 1) / divisor);
  // Counts of huge weights leave double precision.
  if (std::isnan(freedom)) return {};
  const auto whole = static_cast<std::int64_t>(std::min(freedom, kMostFreedom));
  return {whole, StudentProbability(t, whole)};
}

}  // namespace tessaly
