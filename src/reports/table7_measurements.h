// Table 7: the measures of each facet.
#pragma once

#include <string>

#include "reports/report_writer.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Writes Table 7 in the arrangements of `arrange` (items as `Arrange=` stores them, joined with commas): for each
/// facet one table for each item that applies to it.
void MeasurementReport(const std::string& arrange, const Analysis& analysis, ReportWriter& report, RunControl& control,
                       Console& console);

}  // namespace tessaly
