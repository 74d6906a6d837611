// Table 2: what became of the data.
#pragma once

#include "reports/report_writer.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Writes the title of Table 2, with the model statements under `Query=Y`. Before the data are read.
void StartDataSummaryTable(const Analysis& analysis, ReportWriter& report, Console& console);

/// Writes the counts of Table 2 and the list of unspecified elements. After the data are read.
void WriteDataSummary(const Analysis& analysis, ReportWriter& report, Console& console);

}  // namespace tessaly
