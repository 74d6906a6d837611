// The measure axis of a ruler: which line a measure stands on.
#pragma once

#include <cstdint>
#include <optional>

#include "reports/vertical_spec.h"
#include "state/elements.h"
#include "state/settings.h"

namespace tessaly {

/// Most lines between the ends of an axis: where there would be more, each of them stands for more units.
constexpr std::int32_t kMostRulerLines = 2000;
/// No axis reaches further from 0 in user units.
constexpr double kFarthestMeasure = 1e9;

/// Measures in user units on lines 0 (the highest measure) to `LastLine`.
struct RulerAxis {
  double Low = 0;
  double High = 0;
  double LinesPerUnit = 1;
  std::int32_t LastLine = 1;

  /// The measure at the middle of a line.
  double MeasureAt(std::int32_t line) const { return (LastLine - line) / LinesPerUnit + Low; }
  /// The line of a measure, which must be a number; one beyond the axis stands at its end.
  std::int32_t LineOf(double measure) const;
  /// The whole number that is shown at a line, if any; a number is shown on the line where it stands as a measure.
  std::optional<std::int32_t> NumberAt(std::int32_t line) const;
  /// Columns that the longest of the numbers takes.
  int NumberWidth() const;

 private:
  /// Not held to the axis.
  std::int32_t LinesAboveLow(double measure) const;
};

/// The axis for the facets of `columns`: as `yardstick` wants it, and where it does not say, from the whole number
/// below the lowest measure to the one above the highest.
RulerAxis FitRulerAxis(const RulerColumns& columns, const Yardstick& yardstick, const FacetTable& facets,
                       const ElementTable& elements, const Settings& settings);

}  // namespace tessaly
