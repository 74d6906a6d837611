// Where the categories of a scale stand on the measure: for tables and curves, never for estimation.
#pragma once

#include <cstdint>
#include <vector>

#include "model/response_kernel.h"
#include "state/models.h"
#include "state/scales.h"

namespace tessaly {

/// How far from the lowest and the highest expected score an extreme category counts as expected.
constexpr float kExtremeScore = 0.25F;

/// Places of one category. Measures are in user units without `Umean`: a scale stands relative to its observations.
struct CategoryMeasure {
  /// Where the expected score is the category; for the end categories `kExtremeScore` inside the end.
  float AtCategory = 0;
  /// Probability of the category there.
  float PeakProbability = 0;
  /// Where the expected score is half a category below it. This and the next are 0 for category 0.
  float AtHalf = 0;
  /// Where the category and all above it become as probable as all below it (Thurstone threshold).
  float Thurstone = 0;
  /// Between its own Thurstone threshold and the next one; for the end categories where the category has probability
  /// 0.75.
  float ThurstoneMiddle = 0;
  /// Whether the category is the most probable one anywhere, and for categories above 0 from where on.
  bool IsModal = false;
  float Modal = 0;
};

/// The places of categories 0..`top` of a rating scale with at least one step.
std::vector<CategoryMeasure> MeasureCategories(ScaleNumber scale, std::int32_t top, float uscale,
                                               const ScaleTables& scales, ResponseKernel& kernel);

/// What curves of categories have to show.
struct CurveRange {
  float Low = 0;
  float High = 0;
};

/// From the lowest measure (logit) of expected score `inside` to the highest of top - `inside`, over all reported
/// scales of at least `leastTop` steps. Both ends are 0 if there is none.
CurveRange FindScoreRange(float inside, std::int32_t leastTop, const ModelTables& models, const ScaleTables& scales,
                          ResponseKernel& kernel);

/// The range of the charts of categories, in user units without `Umean`: of expected scores `kExtremeScore` inside the
/// ends, over all reported scales of more than one step. A negative `Uscale=` puts Low above High.
CurveRange FindCurveRange(float uscale, const ModelTables& models, const ScaleTables& scales, ResponseKernel& kernel);

}  // namespace tessaly
