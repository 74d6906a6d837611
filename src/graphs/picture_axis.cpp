#include "graphs/picture_axis.h"

#include <algorithm>
#include <cmath>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::string_view kMinus = "\xE2\x88\x92";
/// Values this near to each other, in steps, are the same.
constexpr double kNearly = 1e-3;
constexpr double kFarthestEnd = 1e30;

bool NearlyWhole(double value, double tolerance) {
  return std::fabs(value - std::round(value)) < tolerance;
}

/// Decimals that tell the ticks apart.
int DecimalsFor(const std::vector<AxisTick>& ticks, double step) {
  constexpr int kMostDecimals = 9;
  const int enough = std::clamp(static_cast<int>(std::ceil(1 - std::log10(step))), 0, kMostDecimals);
  int decimals = 0;
  for (double power = 1; decimals < enough; ++decimals, power *= 10) {
    const auto whole = [&](const AxisTick& tick) { return NearlyWhole(tick.Value * power, kNearly * step * power); };
    if (std::all_of(ticks.begin(), ticks.end(), whole)) break;
  }
  return decimals;
}

std::string TickText(double value, double step, int decimals) {
  constexpr double kLongest = 1e7;
  std::string text;
  if (std::fabs(value) >= kLongest) {
    text = BareText(static_cast<float>(value));
  } else {
    const bool whole = NearlyWhole(value, kNearly * std::min(step, 1.0));
    text = TrimBlanks(ZeroedNumber(whole ? std::round(value) : value, 1, whole ? 0 : decimals));
  }
  if (text.find_first_not_of("-0.") == std::string::npos) return "0";
  if (text.front() == '-') text.replace(0, 1, kMinus);
  return text;
}

void NameTicks(PictureAxis& axis, double step) {
  const int decimals = DecimalsFor(axis.Ticks, step);
  for (AxisTick& tick : axis.Ticks) tick.Label = TickText(tick.Value, step, decimals);
}

/// An axis without ticks.
PictureAxis AxisBetween(double low, double high) {
  PictureAxis axis;
  if (!std::isfinite(low) || !std::isfinite(high)) return axis;
  axis.Low = std::clamp(std::min(low, high), -kFarthestEnd, kFarthestEnd);
  axis.High = std::clamp(std::max(low, high), -kFarthestEnd, kFarthestEnd);
  // Singles that differ at all differ by more than this.
  const double least = std::max({std::fabs(axis.Low), std::fabs(axis.High), 1e-6}) * 1e-9;
  if (axis.High - axis.Low < least) axis.High = axis.Low + std::max(1.0, 2 * least);
  return axis;
}

}  // namespace

PictureAxis DivideAxis(double low, double high, double divisions) {
  PictureAxis axis = AxisBetween(low, high);
  const double held = std::isnan(divisions) ? 1 : std::clamp(std::round(divisions), 1.0, double{kMostDivisions});
  const double step = (axis.High - axis.Low) / held;
  for (double at = 0; at <= held; ++at) axis.Ticks.push_back({axis.Low + at * step, {}});
  NameTicks(axis, step);
  return axis;
}

double RoundStep(double length, double parts) {
  const double least = length / std::max(1.0, parts);
  const double power = std::pow(10, std::floor(std::log10(least)));
  for (const double digit : {1.0, 2.0, 5.0}) {
    if (digit * power >= least * (1 - kNearly)) return digit * power;
  }
  return 10 * power;
}

PictureAxis RoundAxis(double low, double high, double mostTicks) {
  PictureAxis axis = AxisBetween(low, high);
  const double step = RoundStep(axis.High - axis.Low, std::clamp(mostTicks, 1.0, double{kMostDivisions}));
  const double first = std::ceil(axis.Low / step - kNearly);
  // Counted, since far from 0 a number may be too coarse for the step to move it.
  for (int at = 0; at <= kMostDivisions && (first + at) * step <= axis.High + kNearly * step; ++at)
    axis.Ticks.push_back({(first + at) * step, {}});
  NameTicks(axis, step);
  return axis;
}

void ThinLabels(PictureAxis& axis, double length, double room) {
  const int parts = static_cast<int>(axis.Ticks.size()) - 1;
  if (parts < 1) return;
  const double spacing = length / parts;
  int every = 1;
  while (every < parts && every * spacing < room) ++every;
  // A number that divides the axis labels both ends, unless that costs too many labels.
  int even = every;
  while (parts % even != 0) ++even;
  if (even <= 2 * every) every = even;
  for (int at = 0; at <= parts; ++at) {
    if (at % every != 0) axis.Ticks[static_cast<std::size_t>(at)].Label.clear();
  }
}

}  // namespace tessaly
