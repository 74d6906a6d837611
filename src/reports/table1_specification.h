// Table 1: the specifications in force.
#pragma once

#include <string>

#include "reports/report_console.h"
#include "reports/report_writer.h"
#include "state/analysis.h"

namespace tessaly {

/// The first two lines of the report: program and version, date of the run.
void ProgramBanner(const std::string& runDate, ReportWriter& report);

/// Writes Table 1 with the warnings that came before it.
void SpecificationTable(const Analysis& analysis, ReportWriter& report, ReportConsole& console);

}  // namespace tessaly
