// Step calibrations and discriminations, once per iteration.
#pragma once

#include "estimate/iteration_summary.h"
#include "state/models.h"
#include "state/scales.h"

namespace tessaly {

/// Updates the steps of one rating scale from observed and expected category counts: log of the observed ratio of
/// adjacent categories less the log of the expected one, times `damping`, recentered to mean 0, or moved with the
/// anchored categories if there are any (Wright & Masters 1982, 4.4).
void UpdateSteps(ScaleNumber scale, std::int32_t top, float damping, float smallest, ScaleTables& scales);

/// How scales are updated in the present iteration.
struct ScaleRule {
  tessaly::Phase Phase = Phase::Recount;
  float CurveDamping = 1;
  float SmallestNumber = 0;
};

/// Updates all scales: steps of rating scales, discriminations of binomial and Poisson scales. Steps stay at their
/// starting values through PROX.
void UpdateScales(const ModelTables& models, const ScaleRule& rule, ScaleTables& scales, IterationSummary& summary,
                  LargestResiduals& largest);

}  // namespace tessaly
