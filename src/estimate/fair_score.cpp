#include "estimate/fair_score.h"

namespace tessaly {

float FairScore(ScaleNumber scale, ModelType type, float measure, bool reversed, const ScaleTables& scales,
                ResponseKernel& kernel) {
  std::int32_t top = scales.Scales[scale].ScaleTopCategory;
  float score = kernel.CategoryProbabilities(scale, type, top, measure);
  const bool renumbered =
      type == ModelType::RatingScale && scales.CategoryOrdinal(scale, scales.RawTopCategory) != scales.RawTopCategory;
  if (renumbered) {
    const std::int16_t* ordinals = scales.CategoryOrdinal.Row(scale);
    score = 0;
    for (std::int32_t raw = 1; raw <= scales.TopCategory; ++raw) {
      if (ordinals[raw] < 0) continue;
      score += static_cast<float>(raw) * kernel.Probability(ordinals[raw]);
      top = raw;
    }
  }
  return reversed ? static_cast<float>(top) - score : score;
}

}  // namespace tessaly
