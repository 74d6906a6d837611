// The rows of means and standard deviations under a measurement table.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "reports/measure_summaries.h"
#include "reports/measurement_layout.h"
#include "state/settings.h"

namespace tessaly {

/// What a summary row shows.
enum class SummaryKind { Mean, Population, Sample };

/// The figure of `kind` of one column.
double SummaryFigure(SummaryKind kind, const RunningMoments& moments);

/// The words of a summary row of `n` rows, short enough for `width` columns.
std::string SummaryLabel(SummaryKind kind, double n, int width);

/// Mean, S.D. as a population and, for more than one row, S.D. as a sample. `group` fills the group column, 0 leaves it
/// blank; `groupLabel` stands behind the lines.
std::vector<std::string> SummaryRows(const RowSummaries& summaries, const MeasurementLayout& layout,
                                     const MeasurementColumns& columns, const Settings& settings, std::int32_t group,
                                     const std::string& groupLabel);

}  // namespace tessaly
