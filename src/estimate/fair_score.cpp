#include "estimate/fair_score.h"

namespace tessaly {

float FairScore(ScaleNumber scale, ModelType type, float measure, bool reversed, const ScaleTables& scales,
                ResponseKernel& kernel) {
  const float expected = kernel.CategoryProbabilities(scale, type, scales.Scales[scale].ScaleTopCategory, measure);
  return FairScoreOf(scale, type, expected, reversed, scales, [&](std::int32_t k) { return kernel.Probability(k); });
}

}  // namespace tessaly
