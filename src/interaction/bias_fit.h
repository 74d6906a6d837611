// How well the responses of each bias term fit once the term is in the model.
#pragma once

#include "data/observation_store.h"
#include "interaction/bias_terms.h"
#include "interaction/observation_terms.h"
#include "model/response_kernel.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Reads all observations once at their measures moved by the size of their term. Fills standard errors, t statistics
/// and mean-squares of the estimable terms, and the moments of `terms.Fit`.
void FitBiasTerms(const ObservationTerms& finder, const Analysis& analysis, ObservationStore& store,
                  ResponseKernel& kernel, RunControl& control, Console& console, BiasTerms& terms);

}  // namespace tessaly
