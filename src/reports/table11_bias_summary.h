// Table 11: how much of the variance the terms of a bias run explain.
#pragma once

#include <cstdint>

#include "estimate/data_fit.h"
#include "interaction/bias_terms.h"
#include "reports/report_writer.h"
#include "state/settings.h"
#include "support/host.h"

namespace tessaly {

/// Moments of the responses with the terms in the model, and the variance explained by the measures and by the terms.
/// `main` is the fit without them; `run` the number of the model statement that asks for it, from 1.
void BiasSummaryTable(std::int32_t run, const BiasTerms& terms, const DataFit& main, const Settings& settings,
                      ReportWriter& report, Console& console);

}  // namespace tessaly
