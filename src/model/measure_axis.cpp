#include "model/measure_axis.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "support/number_text.h"

namespace tessaly {

namespace {

/// Up to here a double tells every whole number from the next.
constexpr float kLargestDrawn = 1e15F;
constexpr std::int64_t kNarrowestNumber = 3;
/// Columns of a tick besides its whole number: point, decimal and a blank.
constexpr std::int64_t kAroundNumber = 3;

std::int64_t NumberWidth(std::int64_t number) {
  return static_cast<std::int64_t>(BareText(number).size());
}

/// 1 to 5 as they are; otherwise the next 10, 20, 30, 40, 50, 100, 200 and so on.
std::int64_t RoundStep(std::int64_t step) {
  std::int64_t power = 1;
  while (step / power >= 10) power *= 10;
  if (step > 5 * power) return 10 * power;
  return (step + power - 1) / power * power;
}

std::int64_t MultipleBelow(std::int64_t number, std::int64_t step) {
  const std::int64_t multiple = number / step * step;
  return multiple > number ? multiple - step : multiple;
}

}  // namespace

std::int32_t MeasureAxis::Column(float measure) const {
  return RoundToLong((static_cast<double>(measure) - static_cast<double>(Low)) / Unit());
}

float MeasureAxis::MeasureAt(std::int32_t column) const {
  return static_cast<float>(static_cast<double>(Low) + column * Unit());
}

std::optional<MeasureAxis> FitMeasureAxis(float oneEnd, float otherEnd, std::int32_t columns) {
  if (!(std::fabs(oneEnd) <= kLargestDrawn && std::fabs(otherEnd) <= kLargestDrawn)) return {};
  auto low = static_cast<std::int64_t>(std::floor(std::min(oneEnd, otherEnd)));
  auto high = static_cast<std::int64_t>(std::ceil(std::max(oneEnd, otherEnd)));
  if (low == high) {
    --low;
    ++high;
  }
  const std::int64_t width = std::max({NumberWidth(low), NumberWidth(high), kNarrowestNumber}) + kAroundNumber;
  MeasureAxis axis;
  axis.Step = RoundStep((width + high - low - 1) / width);
  axis.Low = MultipleBelow(low, axis.Step);
  axis.High = -MultipleBelow(-high, axis.Step);
  axis.Ticks = static_cast<std::int32_t>((axis.High - axis.Low) / axis.Step);
  axis.ColumnsPerTick = columns / axis.Ticks;
  return axis;
}

}  // namespace tessaly
