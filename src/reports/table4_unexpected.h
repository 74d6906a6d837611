// Table 4: the responses that fit worst.
#pragma once

#include "estimate/unexpected_list.h"
#include "reports/report_writer.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Whether `T4MAX=` and `Usort=` leave any table to be written.
bool WantsUnexpectedTables(const Settings& settings);

/// Writes a table for each order of `Usort=`.
void UnexpectedTables(const UnexpectedList& list, const Analysis& analysis, ReportWriter& report, RunControl& control,
                      Console& console);

}  // namespace tessaly
