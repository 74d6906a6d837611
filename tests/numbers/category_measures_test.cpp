// Places of categories on the measure, against closed forms and against all probabilities worked out.
#include "model/category_measures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

#include "unit/model/scale_bed.h"

namespace tessaly {
namespace {

/// Exponents of the categories of a rating scale; kept categories have none and are left at `kNever`.
constexpr double kNever = -1e9;
std::vector<double> Exponents(const ScaleTables& scales, double measure) {
  std::vector<double> exponents{0};
  double sum = 0;
  for (std::int32_t k = 1; k <= scales.Scales[kScale].ScaleTopCategory; ++k) {
    const bool kept = scales.CategoryAnchor(kScale, k) == CategoryAnchor::KeptUnobserved;
    sum += measure - (kept ? 0.0 : double{scales.CategoryStep(kScale, k)});
    exponents.push_back(kept ? kNever : sum);
  }
  return exponents;
}

double ExpectedScore(const ScaleTables& scales, double measure) {
  double weights = 0;
  double score = 0;
  double k = 0;
  for (const double exponent : Exponents(scales, measure)) {
    weights += std::exp(exponent);
    score += k++ * std::exp(exponent);
  }
  return score / weights;
}

std::vector<CategoryMeasure> Measured(const ScaleTables& scales, float uscale = 1) {
  ResponseKernel kernel(scales, 80);
  return MeasureCategories(kScale, scales.Scales[kScale].ScaleTopCategory, uscale, scales, kernel);
}

/// The modal categories above 0, by ordinal, with the measure from which they are.
std::vector<std::pair<int, float>> Modes(const ScaleTables& scales) {
  std::vector<std::pair<int, float>> modes;
  const std::vector<CategoryMeasure> categories = Measured(scales);
  for (std::size_t k = 1; k < categories.size(); ++k)
    if (categories[k].IsModal) modes.emplace_back(static_cast<int>(k), categories[k].Modal);
  return modes;
}

TEST(CategoryMeasures, ExpectedScoresAndCrossings) {
  const ScaleTables scales = OneScale({0, -1.5F, -0.25F, 1.75F});
  const std::vector<CategoryMeasure> categories = Measured(scales, 10);
  ASSERT_EQ(categories.size(), 4U);
  for (std::size_t k = 0; k < 4; ++k) {
    const double score = k == 0 ? 0.25 : k == 3 ? 2.75 : static_cast<double>(k);
    EXPECT_NEAR(ExpectedScore(scales, double{categories[k].AtCategory} / 10), score, 0.01) << k;
    if (k == 0) continue;
    EXPECT_NEAR(ExpectedScore(scales, double{categories[k].AtHalf} / 10), static_cast<double>(k) - 0.5, 0.01) << k;
    // In order, each category takes over from its neighbour at its threshold.
    EXPECT_FLOAT_EQ(categories[k].Modal, 10 * scales.CategoryStep(kScale, static_cast<std::int32_t>(k)));
  }
}

// P(0) = 1 / (1 + exp(m + a) + exp(2 m)) is p where x = exp m solves x^2 + x exp a = 1 / p - 1.
TEST(CategoryMeasures, ThurstoneThresholdsOfThreeCategories) {
  for (const float a : {-0.7F, 0.0F, 1.2F}) {
    const auto zeroHas = [&](double p) {
      const double b = std::exp(double{a});
      return std::log((std::sqrt(b * b + 4 * (1 / p - 1)) - b) / 2);
    };
    const std::vector<CategoryMeasure> categories = Measured(OneScale({0, -a, a}));
    EXPECT_NEAR(double{categories[1].Thurstone}, zeroHas(0.5), 0.02) << a;
    EXPECT_NEAR(double{categories[2].Thurstone}, -zeroHas(0.5), 0.02) << a;
    EXPECT_NEAR(double{categories[0].ThurstoneMiddle}, zeroHas(0.75), 0.04) << a;
    EXPECT_NEAR(double{categories[1].ThurstoneMiddle}, 0, 0.01) << a;
    EXPECT_NEAR(double{categories[2].ThurstoneMiddle}, -zeroHas(0.75), 0.04) << a;
    const double peak = 1 / (1 + 2 * std::exp(-double{a}));
    EXPECT_NEAR(double{categories[1].PeakProbability}, peak, 0.001) << a;
  }
}

TEST(CategoryMeasures, DisorderedThresholdsByHand) {
  using Expected = std::vector<std::pair<int, float>>;
  EXPECT_EQ(Modes(OneScale({0, 1, -1})), (Expected{{2, 0.0F}}));
  EXPECT_EQ(Modes(OneScale({0, 0, 2, -1})), (Expected{{1, 0.0F}, {3, 0.5F}}));
  EXPECT_EQ(Modes(OneScale({0, 2, -1, -4})), (Expected{{3, -1.0F}}));
  EXPECT_EQ(Modes(OneScale({0, 1, 1})), (Expected{{2, 1.0F}}));  // category 1 only ever ties
  ScaleTables kept = OneScale({0, -1, 0, 3});
  kept.CategoryAnchor(kScale, 2) = CategoryAnchor::KeptUnobserved;
  EXPECT_EQ(Modes(kept), (Expected{{1, -1.0F}, {3, 1.5F}}));  // 2 m = 3
}

TEST(CategoryMeasures, ModesAreWhereTheMostProbableCategoryChanges) {
  std::mt19937 random(8);
  std::normal_distribution<float> threshold(0, 1);
  for (int round = 0; round < 60; ++round) {
    std::vector<float> steps(2 + random() % 6);
    for (float& step : steps) step = threshold(random);
    ScaleTables scales = OneScale(steps);
    for (std::int32_t k = 1; k + 1 < static_cast<std::int32_t>(steps.size()); ++k)
      if (random() % 4 == 0) scales.CategoryAnchor(kScale, k) = CategoryAnchor::KeptUnobserved;
    const std::vector<CategoryMeasure> categories = Measured(scales);
    for (const CategoryMeasure& category : categories) {
      if (&category == &categories.front() || !category.IsModal) continue;
      const auto best = [&](double measure) {
        const std::vector<double> exponents = Exponents(scales, measure);
        return std::max_element(exponents.begin(), exponents.end()) - exponents.begin();
      };
      EXPECT_EQ(best(double{category.Modal} + 1e-4), &category - categories.data());
      const auto below = static_cast<std::size_t>(best(double{category.Modal} - 1e-4));
      EXPECT_TRUE(below < static_cast<std::size_t>(&category - categories.data()) && categories[below].IsModal);
    }
    EXPECT_TRUE(categories.back().IsModal);
  }
}

TEST(CategoryMeasures, RangeOfTheCurves) {
  // With all thresholds 0 the expected score of three categories is 1/4 where 7 x^2 + 3 x = 1, x = exp m.
  const double end = std::log((std::sqrt(37.0) - 3) / 14);
  ScaleTables scales = OneScale({0, 0, 0});
  ModelTables models;
  models.Statements.add({});
  ResponseKernel kernel(scales, 80);
  const auto range = [&](float uscale) { return FindCurveRange(uscale, models, scales, kernel); };
  EXPECT_EQ(range(1).Low, 0);  // no scale is reported
  scales.ScaleOrder = {kScale};
  EXPECT_NEAR(double{range(1).Low}, end, 0.05);
  EXPECT_NEAR(double{range(1).High}, -end, 0.05);
  EXPECT_NEAR(double{range(-10).Low}, -10 * end, 0.5);
  scales.Scales[kScale].ScaleTopCategory = 1;
  EXPECT_EQ(range(1).High, 0);
}

}  // namespace
}  // namespace tessaly
