// Table 5: how the data as a whole fit.
#pragma once

#include "estimate/data_fit.h"
#include "reports/report_writer.h"
#include "state/settings.h"
#include "support/host.h"

namespace tessaly {

/// Means and deviations of responses and residuals, the log-likelihood chi-square, what the responses were used for,
/// and how much of their variance the measures explain.
void MeasurableDataSummary(const DataFit& fit, const Settings& settings, ReportWriter& report, Console& console);

}  // namespace tessaly
