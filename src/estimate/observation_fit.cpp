#include "estimate/observation_fit.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

constexpr float kLargestResidual = 9.0F;

void AddDichotomy(const Observation& obs, double expected, ScaleTables& scales) {
  const double w = static_cast<double>(obs.ObsWeight);
  const double measure = static_cast<double>(obs.MeasureSum);
  CategoryStatistics* statistics = scales.CategoryStatistics.Row(obs.CurrentScale);
  // The expected square of category 1 is (1 - E)^2 / V with probability E, that is 1 - E; of category 0 it is E.
  statistics[1].ExpectedSquareSum += (1 - expected) * w;
  statistics[0].Expected.Add(measure, (1 - expected) * w);
  statistics[0].ExpectedSquareSum += expected * w;
  statistics[1].Expected.Add(measure, expected * w);
}

void AddPolytomy(const Observation& obs, double expected, double variance, const Probabilities& probabilities,
                 ScaleTables& scales) {
  const double w = static_cast<double>(obs.ObsWeight);
  CategoryStatistics* statistics = scales.CategoryStatistics.Row(obs.CurrentScale);
  for (std::int32_t k = obs.CurrentTop; k >= 0; --k) {
    const double share = w * static_cast<double>(probabilities[k]);
    const double residual = static_cast<double>(k) - expected;
    statistics[k].ExpectedSquareSum += share * residual * residual / variance;
    statistics[k].Expected.Add(static_cast<double>(obs.MeasureSum), share);
  }
}

void AddExpectedCounts(const Observation& obs, float expected, const Probabilities& probabilities,
                       ScaleTables& scales) {
  double* counts = scales.CategoryExpected.Row(obs.CurrentScale);
  const double w = static_cast<double>(obs.ObsWeight);
  if (obs.CurrentTop <= 1) {
    counts[0] += static_cast<double>(1.0F - expected) * w;
    counts[1] += static_cast<double>(expected) * w;
    return;
  }
  double* information = scales.CategoryInformation.Row(obs.CurrentScale);
  counts[0] += w * static_cast<double>(probabilities[0]);
  double upper = 0;
  for (std::int32_t k = obs.CurrentTop; k >= 1; --k) {
    const double p = static_cast<double>(probabilities[k]);
    counts[k] += w * p;
    if (obs.CurrentType != ModelType::RatingScale) continue;
    // The information of a step is unweighted, while the counts are weighted.
    upper += p;
    information[k] += (1 - upper) * upper;
  }
}

}  // namespace

float HeldResidual(const ResponseMoments& moments) {
  const double root = std::sqrt(static_cast<double>(moments.ResidualSquareZ));
  const float size = std::min(static_cast<float>(root), kLargestResidual);
  const float residual = moments.ResponseResidual;
  return residual > 0 ? size : residual < 0 ? -size : 0.0F;
}

ObservationFit FitOf(const Observation& obs, float expected, const Probabilities& probabilities,
                     const ScaleTables& scales) {
  ObservationFit fit;
  fit.Moments = ObservationMoments(probabilities, obs.CurrentTop, obs.ObsOrdinal, expected);
  if (obs.Status == ReadStatus::Usable) fit.StandardizedResidual = HeldResidual(fit.Moments);
  if (obs.ObsResponse != obs.ObsOrdinal) fit.ReportingOffset = scales.Scales[obs.CurrentScale].ScaleBottomRaw;
  if (obs.ObsOrdinal < 0) throw FatalError{"Failure (14)! Fair score computation failure."};
  return fit;
}

ObservationFit FitAt(const Observation& obs, float measure, const ScaleTables& scales, ResponseKernel& kernel) {
  const float expected = kernel.CategoryProbabilities(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, measure);
  return FitOf(obs, expected, kernel.Table(), scales);
}

void AddToCategories(const Observation& obs, const ObservationFit& fit, const Probabilities& probabilities,
                     float smallest, ScaleTables& scales) {
  const double expected = static_cast<double>(fit.Moments.ExpectedResponse);
  AddExpectedCounts(obs, fit.Moments.ExpectedResponse, probabilities, scales);
  if (obs.CurrentTop == 1) {
    AddDichotomy(obs, expected, scales);
  } else {
    AddPolytomy(obs, expected, static_cast<double>(std::max(fit.Moments.ResponseVariance, smallest)), probabilities,
                scales);
  }
  CategoryStatistics& observed = scales.CategoryStatistics(obs.CurrentScale, obs.ObsOrdinal);
  const double w = static_cast<double>(obs.ObsWeight);
  observed.SquareSum += w * static_cast<double>(fit.Moments.ResidualSquareZ);
  observed.Observed.Add(static_cast<double>(obs.MeasureSum), w);
}

}  // namespace tessaly
