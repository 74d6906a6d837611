// A barchart along a line of numbers: how many values stand at each column, their mean and spread.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// The smallest and the largest of the values that a barchart has to hold.
struct BarchartRange {
  double Lowest = std::numeric_limits<double>::infinity();
  double Highest = -std::numeric_limits<double>::infinity();

  /// Takes `value` in; what is no number changes nothing.
  void Meet(double value);
};

/// The line of numbers under a barchart, from one whole number to another.
struct BarchartAxis {
  static constexpr int kWidest = 80;

  double Bottom = 0;
  double Top = 0;
  double ColumnsPerUnit = 0;
  /// Columns from bottom to top, 40 to `kWidest`.
  int Width = 0;

  /// The nearest column, 0 at the bottom; not held to the width.
  std::int32_t Column(double value) const;
};

/// The axis that holds `range`: in whole units, in tens if it is long. Nothing if the range met no value or reaches
/// beyond 1e15.
std::optional<BarchartAxis> FitAxis(const BarchartRange& range);

/// One barchart being filled.
class Barchart {
 public:
  Barchart(std::string label, const BarchartRange& range);

  /// Counts `value`; beyond the axis it counts at its end, and what is infinite or no number does not count.
  void Tally(double value);

  /// The lines of the report, with neutral box codes: label, tallies to be read downward, axis with M at the mean and
  /// S and Q one and two standard deviations (population) from it, scale, an empty line. No lines if no value was
  /// tallied or no axis holds the range.
  std::vector<std::string> Lines() const;

 private:
  std::vector<std::string> TallyRows() const;
  void DrawScale(std::string& axisLine, std::string& scaleLine) const;
  void MarkMoments(std::string& axisLine) const;

  std::string label_;
  std::optional<BarchartAxis> axis_;
  std::array<std::int32_t, BarchartAxis::kWidest + 1> tallies_{};
  std::int32_t count_ = 0;
  /// Sums of the distances from the bottom, so that large values lose no digits.
  double sum_ = 0;
  double squares_ = 0;
};

}  // namespace tessaly
