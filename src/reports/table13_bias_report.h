// Table 13: one row for each bias term.
#pragma once

#include <cstdint>
#include <string>

#include "interaction/bias_terms.h"
#include "reports/report_writer.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Writes a table for each item of the arrangement that is for no single facet, and gives their number. `Zscore=`
/// decides which terms have a row; all estimable terms enter the summaries. `run` is the number of the
/// model statement that asks for it, from 1.
std::int32_t BiasReport(std::int32_t run, const std::string& arrange, const BiasTerms& terms, const Analysis& analysis,
                        ReportWriter& report, RunControl& control, Console& console);

}  // namespace tessaly
