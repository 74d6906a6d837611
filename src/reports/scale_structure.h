// The structure of a rating scale as three bars over one axis of measures.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/category_measures.h"
#include "model/measure_axis.h"
#include "reports/reported_scale.h"

namespace tessaly {

/// Columns that a chart of Table 8 has between its ends at most.
constexpr std::int32_t kChartColumns = 68;
/// Columns of a line in front of the low end of the axis, in bars and curves.
constexpr std::size_t kChartMargin = 8;

/// A line as long as a bar that begins with `label` and has the numbers of the ticks, each with its decimal point over
/// its column. A number that would run into the one before it is left out; the first ones may run into the label.
std::string TickNumbers(const MeasureAxis& axis, std::string_view label);

/// The lines of the bars: where each category is the most probable one, where it takes over from those below it, and
/// where it is the nearest to the expected score. `places` by ordinal category.
std::vector<std::string> ScaleStructure(const ReportedScale& scale, const std::vector<CategoryMeasure>& places,
                                        const MeasureAxis& axis);

}  // namespace tessaly
