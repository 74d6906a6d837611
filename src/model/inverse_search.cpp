#include "model/inverse_search.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

/// No search looks further (logit).
constexpr float kFarthest = 1048576;

/// Where `rising`, a function of the measure that does not fall, passes 0: halving intervals down to the last digit.
/// The end of the range if it does not pass.
template <class Rising>
float CrossingOf(Rising rising) {
  float low = -1;
  float high = 1;
  while (low > -kFarthest && rising(low) > 0) low *= 2;
  while (high < kFarthest && rising(high) < 0) high *= 2;
  for (;;) {
    const float middle = (low + high) / 2;
    if (!(middle > low && middle < high)) return middle;
    (rising(middle) < 0 ? low : high) = middle;
  }
}

}  // namespace

ScoreSearch MeasureForScore(ResponseKernel& kernel, ScaleNumber scale, ModelType type, std::int32_t top, float score) {
  const auto expected = [&](float measure) { return kernel.CategoryProbabilities(scale, type, top, measure); };
  ScoreSearch found;
  found.Measure = CrossingOf([&](float measure) { return expected(measure) - score; });
  expected(found.Measure);
  const float nearest = std::round(score);
  if (nearest >= 0 && nearest <= static_cast<float>(kProbabilityTop))
    found.Probability = kernel.Probability(static_cast<std::int32_t>(nearest));
  return found;
}

float MeasureForCumulative(ResponseKernel& kernel, ScaleNumber scale, ModelType type, std::int32_t top, float category,
                           float target) {
  const auto last =
      static_cast<std::int32_t>(std::clamp(std::floor(category + 0.5F), -1.0F, static_cast<float>(kProbabilityTop)));
  return CrossingOf([&](float measure) {
    kernel.CategoryProbabilities(scale, type, top, measure);
    float residual = target;
    for (std::int32_t k = 0; k <= last; ++k) residual -= kernel.Probability(k);
    return residual;
  });
}

}  // namespace tessaly
