#include "estimate/jmle_sums.h"

#include <algorithm>

#include "model/response_moments.h"

namespace tessaly {

JmleSums::JmleSums(float probe, ResponseKernel& kernel, Table<ElementIndex, EstimationSums>& sums, ScaleTables& scales)
    : probe_(probe), kernel_(kernel), sums_(sums), scales_(scales), block_(scales, kernel.HardwareExponent(), probe) {}

void JmleSums::Add(const Observation& obs) {
  if (obs.CurrentTop > 1 && obs.CurrentType != ModelType::RatingScale) {
    // Sums have one order.
    AddGathered();
    AddAtOnce(obs);
    return;
  }
  Gather(obs);
  if (block_.Full()) AddGathered();
}

void JmleSums::Gather(const Observation& obs) {
  Gathered& own = gathered_[block_.Size()];
  block_.Put(obs.CurrentScale, obs.CurrentTop, obs.MeasureSum);
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    const ObservedElement& element = obs.Elements[at];
    if (!element.Collects(obs.Status)) continue;
    collectors_.push_back({element.CurrentElement, element.Negative});
    // Until it is added to, it can come from wherever it lies.
    __builtin_prefetch(&sums_[element.CurrentElement], 1);
  }
  own = {obs.CurrentScale, obs.CurrentTop, obs.ObsWeight, obs.CurrentTop > 1 && obs.Status == ReadStatus::Usable,
         static_cast<std::uint32_t>(collectors_.size())};
}

void JmleSums::AddGathered() {
  block_.Evaluate();
  std::size_t next = 0;
  for (std::size_t at = 0; at < block_.Size(); ++at) {
    const Gathered& own = gathered_[at];
    if (own.IntoCategories) AddToCategories(at);
    const Scores scores{block_.Expected(at), block_.Probed(at), block_.Variance(at)};
    for (; next < own.End; ++next) AddToElement(collectors_[next], scores, own.Top, own.Weight);
  }
  block_.Clear();
  collectors_.clear();
}

void JmleSums::AddToCategories(std::size_t at) {
  const Gathered& own = gathered_[at];
  double* expected = scales_.CategoryExpected.Row(own.Scale);
  for (std::int32_t k = own.Top; k >= 0; --k)
    expected[k] += static_cast<double>(own.Weight * block_.Probability(at, k));
}

void JmleSums::AddAtOnce(const Observation& obs) {
  const auto [expected, probed] =
      probe_ != 0
          ? kernel_.ProbedProbabilities(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, obs.MeasureSum, probe_)
          : ProbedScore{
                kernel_.CategoryProbabilities(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, obs.MeasureSum), 0};
  const bool discriminates = scales_.CategoryAnchor(obs.CurrentScale, 0) != CategoryAnchor::Anchored;
  if (obs.Status == ReadStatus::Usable && discriminates) AddDiscrimination(obs);
  const Scores scores{expected, probed, EstimationVariance(kernel_, obs.CurrentTop, LastInVariance(obs), expected)};
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    const ObservedElement& own = obs.Elements[at];
    if (own.Collects(obs.Status))
      AddToElement({own.CurrentElement, own.Negative}, scores, obs.CurrentTop, obs.ObsWeight);
  }
}

void JmleSums::AddToElement(const Collector& collector, const Scores& scores, std::int32_t top, float weight) {
  EstimationSums& sums = sums_[collector.Element];
  sums.Information += scores.Variance * weight;
  const auto score = [&](float s) { return collector.Negative ? static_cast<float>(top) - s : s; };
  sums.ExpectedScore += static_cast<double>(score(scores.Expected) * weight);
  sums.ExpectedScoreProbe += static_cast<double>(score(scores.Probed) * weight);
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
