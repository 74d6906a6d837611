// The rating that an element would get among average elements of the other facets.
#pragma once

#include <cstdint>

#include "model/response_kernel.h"
#include "state/models.h"
#include "state/scales.h"

namespace tessaly {

/// The expected score in raw categories, so that it can be compared with the observed average. `expected` is the
/// expected ordinal, and `probability(k)` the probability of ordinal k. `reversed` turns the score over within the
/// observed raw categories.
template <class Probability>
float FairScoreOf(ScaleNumber scale, ModelType type, float expected, bool reversed, const ScaleTables& scales,
                  const Probability& probability) {
  std::int32_t top = scales.Scales[scale].ScaleTopCategory;
  float score = expected;
  const bool renumbered =
      type == ModelType::RatingScale && scales.CategoryOrdinal(scale, scales.RawTopCategory) != scales.RawTopCategory;
  if (renumbered) {
    const std::int16_t* ordinals = scales.CategoryOrdinal.Row(scale);
    score = 0;
    for (std::int32_t raw = 1; raw <= scales.TopCategory; ++raw) {
      if (ordinals[raw] < 0) continue;
      score += static_cast<float>(raw) * probability(ordinals[raw]);
      top = raw;
    }
  }
  return reversed ? static_cast<float>(top) - score : score;
}

/// The same at `measure` (logit). Leaves the probabilities there in `kernel`.
float FairScore(ScaleNumber scale, ModelType type, float measure, bool reversed, const ScaleTables& scales,
                ResponseKernel& kernel);

}  // namespace tessaly
