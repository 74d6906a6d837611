#include "model/inverse_search.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

constexpr int kMostRounds = 100;
constexpr float kScoreTolerance = 0.01F;
constexpr float kMoveTolerance = 0.005F;

int Sign(float x) {
  return x > 0 ? 1 : x < 0 ? -1 : 0;
}

/// Steps proportional to the residual, halved each time the target is overshot and never longer than a logit.
class DampedSearch {
 public:
  float Move(float residual) {
    if (Sign(residual) != Sign(last_)) factor_ *= 0.5F;
    last_ = residual;
    return std::clamp(residual * factor_, -1.0F, 1.0F);
  }

 private:
  float factor_ = 2;
  float last_ = 1;
};

}  // namespace

ScoreSearch MeasureForScore(ResponseKernel& kernel, ScaleNumber scale, ModelType type, std::int32_t top, float score) {
  ScoreSearch found;
  DampedSearch search;
  float residual = 1;
  for (int round = 0; round < kMostRounds && std::fabs(residual) > kScoreTolerance; ++round) {
    residual = score - kernel.CategoryProbabilities(scale, type, top, found.Measure);
    found.Measure += search.Move(residual);
  }
  const float nearest = std::round(score);
  if (nearest >= 0 && nearest <= static_cast<float>(kProbabilityTop))
    found.Probability = kernel.Probability(static_cast<std::int32_t>(nearest));
  return found;
}

float MeasureForCumulative(ResponseKernel& kernel, ScaleNumber scale, ModelType type, std::int32_t top, float category,
                           float target) {
  const auto last =
      static_cast<std::int32_t>(std::clamp(std::floor(category + 0.5F), -1.0F, static_cast<float>(kProbabilityTop)));
  DampedSearch search;
  float measure = 0;
  float residual = 1;
  float move = 1;
  for (int round = 0;
       round < kMostRounds && (std::fabs(residual) >= kScoreTolerance || std::fabs(move) >= kMoveTolerance); ++round) {
    kernel.CategoryProbabilities(scale, type, top, measure);
    residual = target;
    for (std::int32_t k = 0; k <= last; ++k) residual -= kernel.Probability(k);
    move = search.Move(residual);
    measure -= move;
  }
  return measure;
}

}  // namespace tessaly
