#include "estimate/jmle_sums.h"

#include <algorithm>

#include "model/response_moments.h"

namespace tessaly {

void JmleSums::Add(const Observation& obs) {
  const auto [expected, probed] =
      probe_ != 0
          ? kernel_.ProbedProbabilities(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, obs.MeasureSum, probe_)
          : ProbedScore{
                kernel_.CategoryProbabilities(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, obs.MeasureSum), 0};
  if (obs.CurrentTop > 1 && obs.Status == ReadStatus::Usable) AddCategories(obs);
  const float w = obs.ObsWeight;
  const float information = EstimationVariance(kernel_, obs.CurrentTop, LastInVariance(obs), expected) * w;
  const auto expectedScore = static_cast<double>(expected * w);
  const auto probedScore = static_cast<double>(probed * w);
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    const ObservedElement& own = obs.Elements[at];
    if (!own.Collects(obs.Status)) continue;
    EstimationSums& sums = sums_[own.CurrentElement];
    sums.Information += information;
    if (own.Negative) {
      const auto top = static_cast<float>(obs.CurrentTop);
      sums.ExpectedScore += static_cast<double>((top - expected) * w);
      sums.ExpectedScoreProbe += static_cast<double>((top - probed) * w);
    } else {
      sums.ExpectedScore += expectedScore;
      sums.ExpectedScoreProbe += probedScore;
    }
  }
}

void JmleSums::AddCategories(const Observation& obs) {
  if (obs.CurrentType != ModelType::RatingScale) {
    if (scales_.CategoryAnchor(obs.CurrentScale, 0) != CategoryAnchor::Anchored) AddDiscrimination(obs);
    return;
  }
  double* expected = scales_.CategoryExpected.Row(obs.CurrentScale);
  for (std::int32_t k = obs.CurrentTop; k >= 0; --k)
    expected[k] += static_cast<double>(obs.ObsWeight * kernel_.Probability(k));
}

void JmleSums::AddDiscrimination(const Observation& obs) {
  const bool poisson = obs.CurrentType == ModelType::Poisson;
  const std::int32_t last = poisson ? kernel_.ComputedTop() : obs.CurrentTop;
  double m1 = 0;
  double m2 = 0;
  for (std::int32_t k = poisson ? 2 : 1; k <= last; ++k) {
    const double t = kernel_.DiscriminationStatistic(obs.CurrentType, obs.CurrentTop, k);
    const double p = static_cast<double>(kernel_.Probability(k));
    m1 += t * p;
    m2 += t * t * p;
  }
  const double w = static_cast<double>(obs.ObsWeight);
  scales_.CategoryExpected(obs.CurrentScale, 0) += m1 * w;
  scales_.CategoryInformation(obs.CurrentScale, 1) += (m2 - m1 * m1) * w;
}

std::int32_t JmleSums::LastInVariance(const Observation& obs) const {
  if (obs.CurrentType != ModelType::Poisson) return obs.CurrentTop;
  // Poisson counts are summed beyond the highest category that the kernel computes for short scales; those are 0.
  return std::min(obs.CurrentTop < 5 ? 20 : 4 * obs.CurrentTop, kernel_.ComputedTop());
}

}  // namespace tessaly
