// Table 12: barcharts of the terms of a bias run.
#pragma once

#include <cstdint>

#include "interaction/bias_terms.h"
#include "reports/report_writer.h"
#include "state/settings.h"
#include "support/host.h"

namespace tessaly {

/// The distributions of the sizes (user units) and the t statistics of the estimable terms, with the sign of `Bias=`.
/// `run` is the number of the model statement that asks for it, from 1.
void BiasBarcharts(std::int32_t run, const BiasTerms& terms, const Settings& settings, ReportWriter& report,
                   Console& console);

}  // namespace tessaly
