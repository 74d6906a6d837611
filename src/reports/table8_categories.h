// Table 8: the categories of each rating scale.
#pragma once

#include <string>

#include "model/response_kernel.h"
#include "reports/report_writer.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Writes Table 8 as `options` asks for it: letters N (numbers), B (bars of the structure), C (curves), and behind a
/// `+` the numbers of the scales with commas between them; all scales without a `+`. Nothing without a letter.
void CategoryReport(const std::string& options, const Analysis& analysis, ResponseKernel& kernel, ReportWriter& report,
                    Console& console);

}  // namespace tessaly
