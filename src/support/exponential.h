// The exponential function of the inner loop.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace tessaly {

namespace exponential {

constexpr int kTableBits = 7;
constexpr std::int64_t kTableSize = 1 << kTableBits;
/// 2^(j / 128) for j = 0..127, to the nearest double.
extern const std::array<double, kTableSize> kPowers;

}  // namespace exponential

/// e^x for x up to 700, to within one unit in the last place; 0 below -700.
///
/// x = (128 m + j + f) ln 2 / 128, so that e^x = 2^m 2^(j/128) e^r with |r| at most ln 2 / 256, a table and a short
/// Taylor series (Tang 1989). Ours and inlined, because a call for each category of each observation is what a pass
/// spends its time on, and because C libraries differ in the last place between processors.
inline double Exponential(double x) {
  using exponential::kTableBits;
  using exponential::kTableSize;
  if (x < -700.0) return 0;
  constexpr double kSteps = 184.6649652337873;  // 128 / ln 2
  // ln 2 / 128 in two parts: the product of the first with a whole number of steps is exact.
  constexpr double kStepHigh = 0x1.62e42fef80000p-8;
  constexpr double kStepLow = 0x1.1cf79abc9e3b4p-43;
  // Adding 1.5 x 2^52 leaves the nearest whole number in the low bits.
  constexpr double kToWhole = 0x1.8p52;
  const double shifted = x * kSteps + kToWhole;
  const auto steps =
      static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(shifted) - std::bit_cast<std::uint64_t>(kToWhole));
  const double whole = shifted - kToWhole;
  const double r = (x - whole * kStepHigh) - whole * kStepLow;
  const double square = r * r;
  const double series = r + square * (1.0 / 2 + r * (1.0 / 6)) + square * square * (1.0 / 24 + r * (1.0 / 120));
  const double power = exponential::kPowers[static_cast<std::size_t>(steps & (kTableSize - 1))];
  const auto scaled = std::bit_cast<std::uint64_t>(power) + (static_cast<std::uint64_t>(steps >> kTableBits) << 52);
  const double scale = std::bit_cast<double>(scaled);
  return scale + scale * series;
}

/// The same, rounded to single.
inline float ExponentialSingle(float x) {
  return static_cast<float>(Exponential(static_cast<double>(x)));
}

}  // namespace tessaly
