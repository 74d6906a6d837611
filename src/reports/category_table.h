// The numbers of Table 8: counts, fit and thresholds of the categories of one scale.
#pragma once

#include <vector>

#include "model/category_measures.h"
#include "reports/report_writer.h"
#include "reports/reported_scale.h"
#include "reports/table_frame.h"
#include "state/analysis.h"

namespace tessaly {

/// Keeps a standard error finite where there is no information.
constexpr double kInformationFloor = 1e-5;

/// Writes the table of one scale. `places` by ordinal category: needed for a rating scale with thresholds to show, that
/// is with more than one step or an anchored threshold.
void WriteCategoryTable(const ReportedScale& scale, const CategoryNames& names,
                        const std::vector<CategoryMeasure>& places, const Analysis& analysis, ReportWriter& report,
                        TableFrame& frame);

/// Whether the table of the scale shows thresholds.
bool ShowsThresholds(const ReportedScale& scale, const CategoryNames& names);

}  // namespace tessaly
