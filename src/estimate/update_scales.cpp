#include "estimate/update_scales.h"

#include <algorithm>
#include <vector>

#include "estimate/step_length.h"
#include "model/response_kernel.h"

namespace tessaly {

namespace {

constexpr float kLongestDiscriminationStep = 0.1F;

/// New value of step k before recentering. Steps over categories without observations are left alone; the step that
/// ends such a gap shares its jump among the steps of the gap.
class StepProposal {
 public:
  StepProposal(double observed, double expected, float damping, float smallest)
      : observedBelow_(observed), expectedBelow_(expected), damping_(damping), smallest_(smallest) {}

  float Next(double observed, double expected, float current) {
    float proposed = current;
    if (observedBelow_ > 0 && observed > 0) {
      proposed += damping_ * LogRatio(observedBelow_, observed, expected, expectedBelow_, smallest_);
    } else if (observedBelow_ > 0) {
      gap_ = 1;
      observedSaved_ = observedBelow_;
      expectedSaved_ = expectedBelow_;
    } else if (observed > 0) {
      proposed += damping_ * LogRatio(observedSaved_, observed, expected, expectedSaved_, smallest_) /
                  static_cast<float>(std::max(gap_, 1));
    } else {
      ++gap_;
    }
    observedBelow_ = observed;
    expectedBelow_ = expected;
    return proposed;
  }

 private:
  double observedBelow_;
  double expectedBelow_;
  float damping_;
  float smallest_;
  double observedSaved_ = 0;
  double expectedSaved_ = 0;
  std::int32_t gap_ = 0;
};

bool AnyAnchored(ScaleNumber scale, std::int32_t top, const ScaleTables& scales) {
  const CategoryAnchor* anchors = scales.CategoryAnchor.Row(scale);
  return std::any_of(anchors + 1, anchors + top + 1, [](CategoryAnchor a) { return a == CategoryAnchor::Anchored; });
}

void Offer(const ResidualDetail& detail, IterationSummary& summary, LargestResiduals& largest) {
  if (LargerInSize(detail.Residual, summary.MaxCategoryResidual)) {
    summary.MaxCategoryResidual = detail.Residual;
    largest.Residual = detail;
  }
  if (LargerInSize(detail.Change, summary.MaxCategoryChange)) {
    summary.MaxCategoryChange = detail.Change;
    largest.Change = detail;
  }
  if (LargerInSize(detail.Fraction, summary.MaxCategoryFraction)) summary.MaxCategoryFraction = detail.Fraction;
}

void UpdateRatingScale(ScaleNumber scale, std::int32_t top, const ScaleRule& rule, ScaleTables& scales,
                       IterationSummary& summary, LargestResiduals& largest) {
  if (rule.Phase < Phase::Jmle) {
    std::copy_n(scales.CategoryStep.Row(scale), top + 1, scales.CategoryStepPrevious.Row(scale));
  } else {
    UpdateSteps(scale, top, rule.CurveDamping, rule.SmallestNumber, scales);
  }
  for (std::int32_t k = 0; k <= top; ++k) {
    ResidualDetail detail;
    detail.What = ResidualDetail::Kind::Step;
    detail.Scale = scale;
    detail.Category = k;
    detail.Value = scales.CategoryStep(scale, k);
    if (k > 0 && scales.CategoryAnchor(scale, k) == CategoryAnchor::Free)
      detail.Change = detail.Value - scales.CategoryStepPrevious(scale, k);
    if (rule.Phase >= Phase::Jmle) {
      detail.WithScores = true;
      detail.Observed = scales.CategoryCount(scale, k);
      detail.Expected = scales.CategoryExpected(scale, k);
      detail.Residual = detail.Observed - detail.Expected;
      if (detail.Observed > 0) detail.Fraction = static_cast<float>(detail.Residual / detail.Observed);
    }
    Offer(detail, summary, largest);
  }
}

void UpdateDiscrimination(ScaleNumber scale, ModelType type, ScaleTables& scales, IterationSummary& summary,
                          LargestResiduals& largest) {
  ResidualDetail detail;
  detail.What = type == ModelType::Poisson ? ResidualDetail::Kind::PoissonDiscrimination
                                           : ResidualDetail::Kind::BinomialDiscrimination;
  detail.Scale = scale;
  detail.WithScores = true;
  detail.Observed = scales.CategoryInformation(scale, 0);
  detail.Expected = scales.CategoryExpected(scale, 0);
  detail.Residual = detail.Observed - detail.Expected;
  const double curvature = scales.CategoryInformation(scale, 1);
  // Half a Newton step; without curvature there is nothing to go by.
  const double step = curvature > 0 ? detail.Residual / (2 * curvature) : 0;
  detail.Change = ShortenedStep(step, kLongestDiscriminationStep);
  // The exponent of category k holds -s T(k): too large an observed T asks for a smaller s.
  float& s = scales.CategoryStep(scale, 0);
  scales.CategoryStepPrevious(scale, 0) = s;
  s -= detail.Change;
  detail.Value = s;
  if (LargerInSize(detail.Residual, summary.MaxCategoryResidual)) {
    summary.MaxCategoryResidual = detail.Residual;
    largest.Residual = detail;
  }
  if (LargerInSize(detail.Change, summary.MaxLogitChange)) {
    summary.MaxLogitChange = detail.Change;
    largest.Change = detail;
  }
}

}  // namespace

void UpdateSteps(ScaleNumber scale, std::int32_t top, float damping, float smallest, ScaleTables& scales) {
  const bool anchored = AnyAnchored(scale, top, scales);
  StepProposal proposal(scales.CategoryCount(scale, 0), scales.CategoryExpected(scale, 0), damping, smallest);
  // Proposals wait in the table of previous values until the shift is known.
  float* previous = scales.CategoryStepPrevious.Row(scale);
  float sum = 0;
  std::int32_t count = 0;
  for (std::int32_t k = 1; k <= top; ++k) {
    const float current = scales.CategoryStep(scale, k);
    previous[k] = proposal.Next(scales.CategoryCount(scale, k), scales.CategoryExpected(scale, k), current);
    if (anchored && scales.CategoryAnchor(scale, k) != CategoryAnchor::Anchored) continue;
    ++count;
    sum += anchored ? previous[k] - current : previous[k];
  }
  const float shift = count > 0 ? sum / static_cast<float>(count) : 0.0F;
  for (std::int32_t k = 1; k <= top; ++k) {
    const float proposed = previous[k];
    previous[k] = scales.CategoryStep(scale, k);
    if (scales.CategoryAnchor(scale, k) == CategoryAnchor::Free) scales.CategoryStep(scale, k) = proposed - shift;
  }
}

void UpdateScales(const ModelTables& models, const ScaleRule& rule, ScaleTables& scales, IterationSummary& summary,
                  LargestResiduals& largest) {
  for (const ScaleNumber scale : scales.Scales.all()) {
    const std::int32_t top = scales.Scales[scale].ScaleTopCategory;
    const ModelType type = models.Statements[scales.Scales[scale].ScaleModel].ModelType;
    if (top <= 1) continue;
    if (type == ModelType::RatingScale) {
      UpdateRatingScale(scale, top, rule, scales, summary, largest);
    } else if (rule.Phase >= Phase::Jmle && scales.CategoryAnchor(scale, 0) != CategoryAnchor::Anchored) {
      UpdateDiscrimination(scale, type, scales, summary, largest);
    }
  }
}

}  // namespace tessaly
