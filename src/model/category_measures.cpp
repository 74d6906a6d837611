#include "model/category_measures.h"

#include <algorithm>
#include <limits>

#include "model/inverse_search.h"

namespace tessaly {

namespace {

/// Neighbouring steps that act as one: only the last of their categories is ever the most probable.
struct StepPool {
  std::int32_t Category = 0;
  float Sum = 0;
  std::int32_t Count = 0;

  float Mean() const { return Sum / static_cast<float>(Count); }
};

/// Pools disordered thresholds until what is left ascends. A category kept though unobserved has no step and is never
/// probable, but the step above it spans it.
std::vector<StepPool> PoolDisorderedSteps(ScaleNumber scale, std::int32_t top, const ScaleTables& scales) {
  std::vector<StepPool> pools;
  std::int32_t spanned = 1;
  for (std::int32_t k = 1; k <= top; ++k, ++spanned) {
    if (scales.CategoryAnchor(scale, k) == CategoryAnchor::KeptUnobserved) continue;
    StepPool pool{k, scales.CategoryStep(scale, k), spanned};
    spanned = 0;
    while (!pools.empty() && pool.Mean() <= pools.back().Mean()) {
      pool.Sum += pools.back().Sum;
      pool.Count += pools.back().Count;
      pools.pop_back();
    }
    pools.push_back(pool);
  }
  return pools;
}

/// Searches for the places of one rating scale.
class Places {
 public:
  Places(ScaleNumber scale, std::int32_t top, ResponseKernel& kernel) : scale_(scale), top_(top), kernel_(kernel) {}

  ScoreSearch AtScore(float score) const {
    return MeasureForScore(kernel_, scale_, ModelType::RatingScale, top_, score);
  }
  float AtCumulative(std::int32_t category, float target) const {
    return MeasureForCumulative(kernel_, scale_, ModelType::RatingScale, top_, static_cast<float>(category), target);
  }
  float ScoreOf(std::int32_t category) const {
    const auto score = static_cast<float>(category);
    return category == 0 ? kExtremeScore : category == top_ ? score - kExtremeScore : score;
  }

 private:
  ScaleNumber scale_;
  std::int32_t top_;
  ResponseKernel& kernel_;
};

}  // namespace

std::vector<CategoryMeasure> MeasureCategories(ScaleNumber scale, std::int32_t top, float uscale,
                                               const ScaleTables& scales, ResponseKernel& kernel) {
  constexpr float kMost = 0.75F;
  const Places places(scale, top, kernel);
  std::vector<CategoryMeasure> categories(static_cast<std::size_t>(top) + 1);
  for (std::int32_t k = 0; k <= top; ++k) {
    CategoryMeasure& category = categories[static_cast<std::size_t>(k)];
    const ScoreSearch found = places.AtScore(places.ScoreOf(k));
    category.AtCategory = found.Measure * uscale;
    category.PeakProbability = found.Probability;
    if (k == 0) continue;
    category.AtHalf = places.AtScore(static_cast<float>(k) - 0.5F).Measure * uscale;
    category.Thurstone = places.AtCumulative(k - 1, 0.5F) * uscale;
  }
  for (auto category = categories.begin() + 1; category + 1 < categories.end(); ++category)
    category->ThurstoneMiddle = (category->Thurstone + (category + 1)->Thurstone) / 2;
  categories.front().ThurstoneMiddle = places.AtCumulative(0, kMost) * uscale;
  categories.back().ThurstoneMiddle = places.AtCumulative(top - 1, 1 - kMost) * uscale;

  categories.front().IsModal = true;
  for (const StepPool& pool : PoolDisorderedSteps(scale, top, scales)) {
    CategoryMeasure& category = categories[static_cast<std::size_t>(pool.Category)];
    category.IsModal = true;
    category.Modal = pool.Mean() * uscale;
  }
  return categories;
}

CurveRange FindScoreRange(float inside, std::int32_t leastTop, const ModelTables& models, const ScaleTables& scales,
                          ResponseKernel& kernel) {
  float low = std::numeric_limits<float>::infinity();
  float high = -low;
  for (const ScaleNumber number : scales.ScaleOrder) {
    const Scale& scale = scales.Scales[number];
    if (scale.ScaleTopCategory < leastTop) continue;
    const ModelType type = models.Statements[scale.ScaleModel].ModelType;
    const auto at = [&](float score) {
      return MeasureForScore(kernel, number, type, scale.ScaleTopCategory, score).Measure;
    };
    low = std::min(low, at(inside));
    high = std::max(high, at(static_cast<float>(scale.ScaleTopCategory) - inside));
  }
  if (low > high) return {};
  return {low, high};
}

CurveRange FindCurveRange(float uscale, const ModelTables& models, const ScaleTables& scales, ResponseKernel& kernel) {
  constexpr std::int32_t kLeastTop = 2;
  const CurveRange logits = FindScoreRange(kExtremeScore, kLeastTop, models, scales, kernel);
  return {logits.Low * uscale, logits.High * uscale};
}

}  // namespace tessaly
