#include "interaction/bias_step.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

/// A term that needs more steps than this has a score that is too large for the digits of a single.
constexpr std::int32_t kMostInterpolations = 25;
/// Logit. No report shows a smaller difference.
constexpr float kNarrowestBracket = 1e-6F;

double LogitOf(double score, BiasAim aim, float smallest) {
  const double least = static_cast<double>(smallest);
  return std::log(std::max(score, least) / std::max(static_cast<double>(aim.Possible) - score, least));
}

/// The size where the line through two guesses meets the observed score, never short of `size`.
float Interpolated(BiasAim aim, double expected, float size, const BiasStepRule& rule, const BiasBracket& bracket) {
  const auto logit = [&](double score) { return LogitOf(score, aim, rule.SmallestNumber); };
  const double least = static_cast<double>(rule.SmallestNumber);
  const double here = logit(expected);
  const double aimed = logit(static_cast<double>(aim.Observed));
  const double low = bracket.Low.Known ? logit(static_cast<double>(bracket.Low.Expected)) : 0;
  const double high = bracket.High.Known ? logit(static_cast<double>(bracket.High.Expected)) : 0;
  const double x = static_cast<double>(size);
  const bool fromLow =
      !bracket.High.Known || (bracket.Low.Known && !(std::fabs(high - aimed) < std::fabs(aimed - low)));
  if (fromLow) {
    const double start = static_cast<double>(bracket.Low.Size);
    return static_cast<float>(start + (x - start) * (aimed - low) / std::max(here - low, least));
  }
  const double start = static_cast<double>(bracket.High.Size);
  return static_cast<float>(start - (start - x) * (high - aimed) / std::max(high - here, least));
}

float Within(const BiasBracket& bracket, float size) {
  if (!bracket.Low.Known || !bracket.High.Known) return size;
  return std::max(std::min(size, bracket.High.Size), bracket.Low.Size);
}

/// By halving the bracket, or on by a logit as long as there is none; `size` itself where nothing is left to halve.
float Halved(const BiasBracket& bracket, float size, double residual) {
  if (!bracket.Low.Known || !bracket.High.Known) return residual > 0 ? size + 1 : size - 1;
  if (bracket.High.Size - bracket.Low.Size < kNarrowestBracket) return size;
  return 0.5F * bracket.Low.Size + 0.5F * bracket.High.Size;
}

void Learn(BiasBracket& bracket, float size, double expected, double residual) {
  (residual > 0 ? bracket.Low : bracket.High) = {size, static_cast<float>(expected), true};
  ++bracket.Tried;
}

bool MeetsCriteria(const BiasStep& step, float size, const BiasStepRule& rule) {
  return std::fabs(step.Size - size) <= rule.Size && std::fabs(step.Residual) <= static_cast<double>(rule.Score);
}

float Held(float size, const BiasStepRule& rule) {
  return std::clamp(size, -rule.Limit, rule.Limit);
}

}  // namespace

BiasStep FirstBiasStep(BiasAim aim, double expected, float variance, const BiasStepRule& rule, BiasBracket& bracket) {
  BiasStep step;
  step.Residual = static_cast<double>(aim.Observed) - expected;
  if (!std::isfinite(step.Residual)) {
    step.Settled = true;
    return step;
  }
  step.Size = Held(static_cast<float>(step.Residual / static_cast<double>(std::max(1.0F, variance))), rule);
  Learn(bracket, 0, expected, step.Residual);
  step.Settled = MeetsCriteria(step, 0, rule);
  return step;
}

BiasStep NextBiasStep(BiasAim aim, double expected, float size, const BiasStepRule& rule, BiasBracket& bracket) {
  BiasStep step;
  step.Residual = static_cast<double>(aim.Observed) - expected;
  step.Size = size;
  if (!std::isfinite(step.Residual)) {
    step.Settled = true;
    return step;
  }
  const bool triedBefore = bracket.Low.IsAt(size) || bracket.High.IsAt(size);
  if (step.Residual != 0) {
    const float candidate = Interpolated(aim, expected, size, rule, bracket);
    step.Size = Within(bracket, step.Residual > 0 ? std::max(size, candidate) : std::min(size, candidate));
    step.Size = Held(step.Size, rule);
  }
  Learn(bracket, size, expected, step.Residual);
  step.Settled = MeetsCriteria(step, size, rule);
  const bool circling = triedBefore && (bracket.Low.IsAt(step.Size) || bracket.High.IsAt(step.Size));
  if (step.Settled || !(circling || bracket.Tried > kMostInterpolations)) return step;
  step.Size = Held(Halved(bracket, size, step.Residual), rule);
  step.Settled = step.Size == size;
  return step;
}

}  // namespace tessaly
