// The step of one element from the sums of a pass.
#pragma once

#include "state/elements.h"
#include "state/run_control.h"
#include "state/settings.h"

namespace tessaly {

/// What moves an element, and how far it is from its observed score.
struct ElementStepResult {
  /// Logit, on the facet's own scale.
  float Change = 0;
  /// Score points; 0 in PROX.
  float Residual = 0;
  /// Residual / possible score.
  float Fraction = 0;
};

/// How steps are made in the present iteration.
struct StepRule {
  tessaly::Phase Phase = Phase::Recount;
  /// 0: curve-fitting; otherwise the Newton-Raphson step size.
  float NewtonStep = 0;
  float CurveDamping = 1;
  /// Shift of the measure (logit) at which the slope of the score curve was probed.
  float CurveProbe = 0.5F;
};

/// The step of an element with these sums. In PROX an element with a starting value (or without sums) is set to that
/// value and does not move.
///
/// PROX: expansion factor times the logit of the score, less the mean of the other signed measures met (Cohen 1979;
/// Wright & Masters 1982, 3.4). JMLE: a damped step along the logit of the score curve, or Newton-Raphson; never above
/// 1 logit.
ElementStepResult ElementStep(const ElementRecord& record, const EstimationSums& sums, bool facetPositive,
                              const StepRule& rule, const Settings& settings, float& measure);

}  // namespace tessaly
