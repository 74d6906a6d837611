#include "estimate/element_step.h"

#include <algorithm>
#include <cmath>

#include "estimate/step_length.h"
#include "model/response_kernel.h"

namespace tessaly {

namespace {

/// 1.7 squared: the logistic and the normal ogive differ by a factor of about 1.7.
constexpr double kProxSpread = 2.89;
constexpr float kLongestStep = 1.0F;
constexpr float kCurveFittingShare = 0.5F;

/// The logit at which the PROX method places an element: where it balances the mean of the other measures that it met,
/// which count with the sign they have in the model.
float ProxMeasure(const ElementRecord& record, const EstimationSums& sums, double possible) {
  const double n = static_cast<double>(sums.ProxWeight);
  const double mean = sums.ExpectedScore / n;
  const double variance = (static_cast<double>(sums.Information) - sums.ExpectedScore * mean) / (n * kProxSpread);
  const double expansion = variance > -1 ? std::sqrt(variance + 1) : 0;
  const double logit = std::log(std::max(record.ObservedScore, 0.5) / std::max(possible - record.ObservedScore, 0.5));
  return static_cast<float>(expansion * logit - mean);
}

float CurveFittingChange(const EstimationSums& sums, double adjusted, double possible, const StepRule& rule,
                         float smallest) {
  const double s = sums.ExpectedScore;
  const double probed = sums.ExpectedScoreProbe;
  const float slope = LogRatio(s, possible - s, possible - probed, probed, smallest);
  if (std::fabs(slope) <= smallest) return 0;
  const float gap = LogRatio(adjusted, possible - adjusted, possible - s, s, smallest);
  return gap * kCurveFittingShare * rule.CurveDamping * std::min(1.0F, std::fabs(rule.CurveProbe / slope));
}

}  // namespace

ElementStepResult ElementStep(const ElementRecord& record, const EstimationSums& sums, bool facetPositive,
                              const StepRule& rule, const Settings& settings, float& measure) {
  ElementStepResult step;
  const double possible = std::fabs(record.PossibleScore);
  if (possible == 0) return step;
  if (rule.Phase < Phase::Jmle) {
    if (record.AnchorValue != 0 || sums.ProxWeight <= settings.SmallestNumber) {
      measure = record.AnchorValue;
      return step;
    }
    const float prox = ProxMeasure(record, sums, possible);
    step.Change = (facetPositive ? prox : -prox) - measure;
    return step;
  }
  // Extreme scores have no finite estimate: they are moved Xtreme= score points inside the range.
  const double t = static_cast<double>(settings.XtremeMain * record.SmallestWeight);
  const double adjusted = std::min(std::max(record.ObservedScore, t), possible - t);
  step.Residual = static_cast<float>(adjusted - sums.ExpectedScore);
  step.Fraction = static_cast<float>(static_cast<double>(step.Residual) / possible);
  if (rule.NewtonStep != 0) {
    step.Change = rule.NewtonStep * step.Residual / std::max(sums.Information, 1.0F);
  } else {
    step.Change = CurveFittingChange(sums, adjusted, possible, rule, settings.SmallestNumber);
  }
  if (!facetPositive) step.Change = -step.Change;
  step.Change = ShortenedStep(static_cast<double>(step.Change), kLongestStep);
  return step;
}

}  // namespace tessaly
