// The exponential function of the inner loop.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace tessaly {

namespace exponential {

constexpr int kTableBits = 7;
constexpr std::size_t kTableSize = std::size_t{1} << kTableBits;
/// 2^(j / 128) for j = 0..127, to the nearest double.
extern const std::array<double, kTableSize> kPowers;
/// What is missing in each, as a share of it.
extern const std::array<double, kTableSize> kRemainders;

}  // namespace exponential

/// x = (128 m + j + f) ln 2 / 128, so that e^x = 2^m 2^(j/128) e^r with |r| at most ln 2 / 256, a table and a short
/// Taylor series (Tang 1989). Ours and inlined, because a call for each category of each observation is what a pass
/// spends its time on, and because C libraries differ in the last place between processors. As long as products and
/// sums are not joined, every compiler and every width of registers gives the same bits.
namespace exponential {

/// Below this, e^x counts as 0.
constexpr double kLowest = -700.0;

/// 128 m + j, and e^r - 1.
struct Reduced {
  std::uint64_t Steps;
  double Series;
};

[[gnu::always_inline]] inline Reduced Reduce(double x) {
  constexpr double kSteps = 184.6649652337873;  // 128 / ln 2
  // ln 2 / 128 in two parts: the product of the first with a whole number of steps is exact.
  constexpr double kStepHigh = 0x1.62e42fef80000p-8;
  constexpr double kStepLow = 0x1.1cf79abc9e3b4p-43;
  // Adding 1.5 x 2^52 leaves the nearest whole number in the low bits.
  constexpr double kToWhole = 0x1.8p52;
  const double shifted = x * kSteps + kToWhole;
  const double whole = shifted - kToWhole;
  const double r = (x - whole * kStepHigh) - whole * kStepLow;
  const double square = r * r;
  return {std::bit_cast<std::uint64_t>(shifted) - std::bit_cast<std::uint64_t>(kToWhole),
          r + square * (1.0 / 2 + r * (1.0 / 6)) + square * square * (1.0 / 24 + r * (1.0 / 120))};
}

[[gnu::always_inline]] inline double Combine(const Reduced& reduced) {
  const std::size_t place = reduced.Steps & (kTableSize - 1);
  const std::uint64_t exponent = (reduced.Steps - place) << (52 - kTableBits);
  const double scale = std::bit_cast<double>(std::bit_cast<std::uint64_t>(kPowers[place]) + exponent);
  return scale + scale * (reduced.Series + kRemainders[place]);
}

}  // namespace exponential

/// e^x for x up to 700, to within 0.52 units in the last place; 0 below -700.
inline double Exponential(double x) {
  using namespace exponential;
  if (x < kLowest) return 0;
  return Combine(Reduce(x));
}

/// The same, rounded to single.
inline float ExponentialSingle(float x) {
  return static_cast<float>(Exponential(static_cast<double>(x)));
}

}  // namespace tessaly
