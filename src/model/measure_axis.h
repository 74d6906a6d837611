// The axis of tables and graphs along the measure.
#pragma once

#include <cstdint>
#include <optional>

namespace tessaly {

/// An axis in user units: from one multiple of a round step to another, with a tick at each, and the same number of
/// columns (or points) between neighbouring ticks.
struct MeasureAxis {
  std::int64_t Low = 0;
  std::int64_t High = 0;
  std::int64_t Step = 1;
  std::int32_t Ticks = 1;
  std::int32_t ColumnsPerTick = 1;

  std::int32_t Columns() const { return Ticks * ColumnsPerTick; }
  /// Measure that a column stands for.
  double Unit() const { return static_cast<double>(High - Low) / Columns(); }
  /// Value of a tick, 0 at the low end.
  std::int64_t TickValue(std::int32_t tick) const { return Low + tick * Step; }
  /// The nearest column, 0 at the low end; not held to the axis.
  std::int32_t Column(float measure) const;
  /// The measure of a column.
  float MeasureAt(std::int32_t column) const;
};

/// The axis that holds the measures between the two in whole units, in at most `columns` columns, at least 30. Ticks
/// are no closer than their numbers need. Nothing if a measure is beyond 1e15 or no number.
std::optional<MeasureAxis> FitMeasureAxis(float oneEnd, float otherEnd, std::int32_t columns);

}  // namespace tessaly
