// Table 6: the vertical rulers of all facets, and those of disjoint subsets.
#pragma once

#include <string>

#include "model/response_kernel.h"
#include "reports/report_writer.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Writes Table 6.0, the rulers of `vertical` (as `Vertical=` has it) with the dimensions of `yardstick` (as
/// `Yardstick=` has them). Nothing if `vertical` begins with "N".
void VerticalRulers(const std::string& vertical, const std::string& yardstick, const Analysis& analysis,
                    ResponseKernel& kernel, ReportWriter& report, Console& console);

/// If the data fall into subsets and `vertical` wants rulers: with `Subsets=Report` and `List` Table 6.0.0, a list of
/// the elements of each subset, and with `Report` Table 6.0.n, a ruler of element numbers for each subset. With a
/// `Subsets=` that only detects, a line that tells their number.
void SubsetRulers(const std::string& vertical, const std::string& yardstick, const Analysis& analysis,
                  ResponseKernel& kernel, ReportWriter& report, Console& console);

}  // namespace tessaly
