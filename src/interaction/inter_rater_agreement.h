// Agreement between raters: how often two of them give the same rating to the same thing, and how often they should.
#pragma once

#include "data/observation_store.h"
#include "model/response_kernel.h"
#include "state/agreement.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Compares all pairs of observations of different raters that hold the same elements in all matching facets, at the
/// final measures. An observation with an extreme element is expected to turn out as it did. What prevents the
/// comparison is told as a warning; then, and when the user asks to finish, the result is not `Computed`.
Agreement InterRaterAgreement(const Analysis& analysis, ObservationStore& store, ResponseKernel& kernel,
                              RunControl& control, Console& console);

}  // namespace tessaly
