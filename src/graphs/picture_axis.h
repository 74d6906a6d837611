// The axis of a picture: its range, its ticks and what they are called.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

struct AxisTick {
  double Value = 0;
  /// Empty where there is no room for it.
  std::string Label;
};

/// High is above Low, both are finite.
struct PictureAxis {
  double Low = 0;
  double High = 1;
  /// Ascending.
  std::vector<AxisTick> Ticks;

  /// Where a value stands: 0 at the low end, 1 at the high one, beyond them outside.
  double Share(double value) const { return (value - Low) / (High - Low); }
};

/// More ticks than these have no room on a page.
constexpr int kMostDivisions = 50;

/// The axis between two values with `divisions` equal parts. Ends without an order, or that are no numbers, and other
/// numbers of divisions are replaced by the nearest that make an axis.
PictureAxis DivideAxis(double low, double high, double divisions);

/// The axis between two values with ticks at multiples of a round step, at most `mostTicks` and the ends.
PictureAxis RoundAxis(double low, double high, double mostTicks);

/// The smallest of 1, 2, 5 times a power of ten that cuts `length` into at most `parts`.
double RoundStep(double length, double parts);

/// Keeps the labels of every n-th tick, so that each has `room` on an axis of `length`.
void ThinLabels(PictureAxis& axis, double length, double room);

}  // namespace tessaly
