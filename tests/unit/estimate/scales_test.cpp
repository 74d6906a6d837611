// Category tables through their life: prepared, renumbered, updated.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "estimate/fair_score.h"
#include "estimate/prepare_scales.h"
#include "estimate/renumber_scale.h"
#include "estimate/update_scales.h"
#include "unit/model/scale_bed.h"

namespace tessaly {
namespace {

ModelTables OneModel(ModelType type, bool keep = false) {
  ModelTables models;
  models.Statements.add({});
  models.Statements[{0}].ModelType = type;
  models.Statements[{0}].ModelKeep = keep;
  return models;
}

/// A scale with the code's top and these counts by raw category.
ScaleTables Counted(const std::vector<double>& counts) {
  ScaleTables scales = OneScale(std::vector<float>(counts.size(), 0));
  for (std::size_t k = 0; k < counts.size(); ++k)
    scales.CategoryCount(kScale, static_cast<std::int32_t>(k)) =
        scales.CategoryRawCount(kScale, static_cast<std::int32_t>(k)) = counts[k];
  return scales;
}

std::vector<int> Ordinals(const ScaleTables& scales) {
  const std::int16_t* const row = scales.CategoryOrdinal.Row(kScale);
  return {row, row + scales.CategoryOrdinal.Categories()};
}

TEST(RenumberScale, ClosesUpKeepsOrHoldsCategories) {
  struct Case {
    std::string_view What;
    std::vector<double> Counts;
    bool Keep;
    std::vector<int> Ordinals;
    int Bottom;
    /// Held at -1, kept at -3, by new ordinal.
    std::vector<int> Anchors;
  };
  for (const Case& c : {
           Case{"all used", {3, 4, 5}, false, {0, 1, 2}, 0, {0, 0, 0}},
           Case{"gap and ends closed up", {0, 2, 5, 0, 1, 0}, false, {-1, 0, 1, -1, 2, -1}, 1, {0, 0, 0}},
           Case{"gap kept, ends dropped", {0, 2, 5, 0, 1, 0}, true, {-1, 0, 1, 2, 3, -1}, 1, {0, 0, -3, 0}},
           Case{"two used", {0, 0, 2, 0, 4}, false, {-1, -1, 0, -1, 1}, 2, {0, 0}},
           Case{"lone category in the middle: the one below it", {0, 0, 7, 0}, false, {-1, 0, 1, -1}, 1, {-1, -1}},
           Case{"lone category in the middle, kept", {0, 0, 7, 0}, true, {-1, 0, 1, -1}, 1, {-1, -1}},
           Case{"lone lowest category: the one above it", {7, 0, 0}, false, {0, 1, -1}, 0, {-1, -1}},
           Case{"lone highest category", {0, 0, 7}, false, {-1, 0, 1}, 1, {-1, -1}},
           Case{"nothing observed", {0, 0, 0}, false, {-1, -1, -1}, 0, {}},
       }) {
    SCOPED_TRACE(c.What);
    ScaleTables scales = Counted(c.Counts);
    const ResponseKernel kernel(scales, 80);
    const auto oldTop = static_cast<int>(c.Counts.size()) - 1;
    const auto newTop = static_cast<int>(c.Anchors.size()) - 1;
    EXPECT_EQ(RenumberScale(kScale, ModelType::RatingScale, c.Keep, kernel, scales), newTop != oldTop);
    EXPECT_EQ(Ordinals(scales), c.Ordinals);
    EXPECT_EQ(scales.Scales[kScale].ScaleTopCategory, newTop);
    EXPECT_EQ(scales.Scales[kScale].ScaleBottomRaw, c.Bottom);
    for (int k = 0; k <= newTop; ++k)
      EXPECT_EQ(static_cast<int>(scales.CategoryAnchor(kScale, k)), c.Anchors[static_cast<std::size_t>(k)]) << k;
    for (int raw = 0; raw <= oldTop; ++raw) {
      const int ordinal = c.Ordinals[static_cast<std::size_t>(raw)];
      if (ordinal < 0) continue;
      EXPECT_EQ(scales.CategoryCount(kScale, ordinal), c.Counts[static_cast<std::size_t>(raw)]);
    }
    EXPECT_FALSE(RenumberScale(kScale, ModelType::RatingScale, c.Keep, kernel, scales));
    EXPECT_EQ(Ordinals(scales), c.Ordinals);
  }
}

TEST(RenumberScale, ALaterRecountClosesUpFurtherAndTakesStepsAlong) {
  ScaleTables scales = Counted({0, 4, 0, 3, 2, 6});
  const ResponseKernel kernel(scales, 80);
  RenumberScale(kScale, ModelType::RatingScale, false, kernel, scales);  // 1, 3, 4, 5
  for (int k = 1; k <= 3; ++k) scales.CategoryStep(kScale, k) = static_cast<float>(k);
  scales.CategoryCount(kScale, 1) = 0;
  EXPECT_TRUE(RenumberScale(kScale, ModelType::RatingScale, false, kernel, scales));
  EXPECT_EQ(Ordinals(scales), (std::vector<int>{-1, 0, -1, -1, 1, 2}));
  EXPECT_EQ(scales.CategoryStep(kScale, 1), 2);
  EXPECT_EQ(scales.CategoryStep(kScale, 2), 3);
  EXPECT_EQ(scales.CategoryCount(kScale, 1), 2);
}

TEST(PrepareScales, TakesValuesInUserUnitsAndAnchorsRaiseTheTop) {
  ModelTables models = OneModel(ModelType::RatingScale);
  RatingScaleDefinition definition;
  definition.Categories = {{},
                           {"zero", "", ' ', "", true},
                           {"one", "-5", 'A', "", true},
                           {"two", "0", ' ', "", true},
                           {"three", "text", 'A', "", true},
                           {"four", "2+3", 'A', "", true}};
  models.Definitions.add(definition);
  models.Statements[{0}].ModelDefinition = {0};
  Settings settings;
  settings.Uscale = 10;
  ScaleTables scales = Counted({2, 3, 4, 0, 0, 0});
  scales.Scales[kScale].ScaleTopCategory = 2;
  PrepareScales(models, settings, scales);
  const CategoryAnchor* const anchors = scales.CategoryAnchor.Row(kScale);
  EXPECT_EQ(std::vector<CategoryAnchor>(anchors, anchors + 5),
            (std::vector{CategoryAnchor::Free, CategoryAnchor::Anchored, CategoryAnchor::StartingValue,
                         CategoryAnchor::Free, CategoryAnchor::Anchored}));
  EXPECT_FLOAT_EQ(scales.CategoryStep(kScale, 1), -0.5F);
  EXPECT_FLOAT_EQ(scales.CategoryStep(kScale, 4), 0.5F);
  EXPECT_EQ(scales.Scales[kScale].ScaleTopCategory, 4);
  // The anchored category survives though nobody used it; the one below it does not.
  const ResponseKernel kernel(scales, 80);
  EXPECT_TRUE(RenumberScale(kScale, ModelType::RatingScale, false, kernel, scales));
  EXPECT_EQ(Ordinals(scales), (std::vector<int>{0, 1, 2, -1, 3, -1}));
  EXPECT_FLOAT_EQ(scales.CategoryStep(kScale, 3), 0.5F);
  EXPECT_EQ(scales.CategoryAnchor(kScale, 3), CategoryAnchor::Anchored);

  // Discriminations: fixed at 1 without a definition, free with one, from its value on with a value, which stays as it
  // is.
  for (const auto& [value, flag, step, anchor] : {std::tuple{"", ' ', 1.0F, CategoryAnchor::Free},
                                                  {"1.5", ' ', 1.5F, CategoryAnchor::StartingValue},
                                                  {"1.5", 'A', 1.5F, CategoryAnchor::Anchored},
                                                  {"-2", 'A', 1.0F, CategoryAnchor::Free}}) {
    ModelTables trials = OneModel(ModelType::Binomial);
    trials.Definitions.add({});
    trials.Definitions[{0}].Categories = {{}, {"zero", value, flag, "", true}};
    trials.Statements[{0}].ModelDefinition = {0};
    PrepareScales(trials, settings, scales);
    EXPECT_EQ(scales.CategoryStep(kScale, 0), step) << value << flag;
    EXPECT_EQ(scales.CategoryAnchor(kScale, 0), anchor) << value << flag;
  }
  PrepareScales(OneModel(ModelType::Poisson), settings, scales);
  EXPECT_EQ(scales.CategoryAnchor(kScale, 0), CategoryAnchor::Anchored);
}

/// Runs one update of the steps with these counts and gives the steps behind it.
std::vector<double> StepsAfter(ScaleTables& scales, const std::vector<double>& observed,
                               const std::vector<double>& expected, float damping = 1) {
  const auto top = static_cast<std::int32_t>(observed.size()) - 1;
  for (std::int32_t k = 0; k <= top; ++k) {
    scales.CategoryCount(kScale, k) = observed[static_cast<std::size_t>(k)];
    scales.CategoryExpected(kScale, k) = expected[static_cast<std::size_t>(k)];
  }
  UpdateSteps(kScale, top, damping, 1e-30F, scales);
  const float* const steps = scales.CategoryStep.Row(kScale);
  return {steps + 1, steps + top + 1};
}

void ExpectNear(const std::vector<double>& got, const std::vector<double>& wanted) {
  ASSERT_EQ(got.size(), wanted.size());
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], wanted[i], 1e-5) << i;
}

TEST(UpdateSteps, MovesByLogRatiosAndKeepsTheMeanAtZero) {
  ScaleTables scales = OneScale({0, -0.5F, 0.1F, 0.4F});
  const std::vector<double> observed{10, 20, 15, 5};
  const std::vector<double> expected{8, 22, 12, 8};
  std::vector<double> wanted{-0.5, 0.1, 0.4};
  for (std::size_t k = 1; k <= 3; ++k)
    wanted[k - 1] += 0.8 * (std::log(observed[k - 1] / observed[k]) - std::log(expected[k - 1] / expected[k]));
  const double mean = (wanted[0] + wanted[1] + wanted[2]) / 3;
  for (double& step : wanted) step -= mean;
  ExpectNear(StepsAfter(scales, observed, expected, 0.8F), wanted);
  EXPECT_EQ(scales.CategoryStepPrevious(kScale, 3), 0.4F);
}

TEST(UpdateSteps, AJumpOverEmptyCategoriesIsSharedAmongTheStepsOfTheGap) {
  ScaleTables scales = OneScale({0, -0.6F, 0, 0, 0.6F});
  // Categories 2 and 3 are empty: steps 2 and 3 stay, step 4 takes half of the jump from 1 to 4.
  const std::vector<double> wanted = [] {
    std::vector<double> steps{-0.6 + std::log(10.0 / 20) - std::log(12.0 / 16), 0, 0,
                              0.6 + (std::log(20.0 / 5) - std::log(16.0 / 8)) / 2};
    const double mean = std::accumulate(steps.begin(), steps.end(), 0.0) / 4;
    for (double& step : steps) step -= mean;
    return steps;
  }();
  ExpectNear(StepsAfter(scales, {10, 20, 0, 0, 5}, {12, 16, 2, 1, 8}), wanted);
}

TEST(UpdateSteps, FreeStepsFollowTheMeanMoveOfAnchoredOnes) {
  ScaleTables scales = OneScale({0, -1, 0.5F, 2});
  scales.CategoryAnchor(kScale, 1) = CategoryAnchor::Anchored;
  scales.CategoryAnchor(kScale, 3) = CategoryAnchor::StartingValue;
  const double move1 = std::log(10.0 / 20) - std::log(8.0 / 22);
  const double move2 = std::log(20.0 / 15) - std::log(22.0 / 12);
  ExpectNear(StepsAfter(scales, {10, 20, 15, 5}, {8, 22, 12, 8}), {-1, 0.5 + move2 - move1, 2});
  // All anchored: nothing moves.
  for (int k = 1; k <= 3; ++k) scales.CategoryAnchor(kScale, k) = CategoryAnchor::Anchored;
  const float held = scales.CategoryStep(kScale, 2);
  ExpectNear(StepsAfter(scales, {10, 20, 15, 5}, {8, 22, 12, 8}), {-1, double{held}, 2});
  IterationSummary summary;
  LargestResiduals largest;
  UpdateScales(OneModel(ModelType::RatingScale), {Phase::Jmle, 1, 1e-30F}, scales, summary, largest);
  EXPECT_EQ(summary.MaxCategoryChange, 0);
  EXPECT_EQ(summary.MaxCategoryResidual, 3);  // the first of equals
  EXPECT_EQ(largest.Residual->Category, 2);
}

TEST(UpdateSteps, AKeptCategoryCountsInTheMeanAndStaysAtZero) {
  ScaleTables scales = OneScale({0, -0.4F, 0, 0.4F});
  scales.CategoryAnchor(kScale, 2) = CategoryAnchor::KeptUnobserved;
  const double first = -0.4 + std::log(10.0 / 20) - std::log(12.0 / 18);
  const double last = 0.4 + std::log(20.0 / 5) - std::log(18.0 / 5);
  const double mean = (first + last) / 3;
  ExpectNear(StepsAfter(scales, {10, 20, 0, 5}, {12, 18, 0, 5}), {first - mean, 0, last - mean});
}

TEST(UpdateScales, StepsRestInProxAndDiscriminationsMoveHalfANewtonStep) {
  ScaleTables scales = OneScale({0, -1, 1});
  scales.CategoryCount(kScale, 0) = 5;
  scales.CategoryExpected(kScale, 0) = 1;
  IterationSummary summary;
  LargestResiduals largest;
  UpdateScales(OneModel(ModelType::RatingScale), {Phase::Prox, 1, 1e-30F}, scales, summary, largest);
  EXPECT_EQ(scales.CategoryStep(kScale, 1), -1);
  EXPECT_EQ(summary.MaxCategoryResidual, 0);

  struct Case {
    double Observed, Expected, Information, Discrimination;
  };
  for (const Case& c :
       {Case{10, 9, 20, 1 - 1 / 40.0}, Case{9, 10, 20, 1 + 1 / 40.0}, Case{30, 10, 20, 1 - 0.5 * std::pow(0.9, 16)}}) {
    scales.CategoryStep(kScale, 0) = 1;
    scales.CategoryInformation(kScale, 0) = c.Observed;
    scales.CategoryExpected(kScale, 0) = c.Expected;
    scales.CategoryInformation(kScale, 1) = c.Information;
    summary = {};
    UpdateScales(OneModel(ModelType::Poisson), {Phase::Jmle, 1, 1e-30F}, scales, summary, largest);
    EXPECT_NEAR(double{scales.CategoryStep(kScale, 0)}, c.Discrimination, 1e-6);
    EXPECT_EQ(summary.MaxCategoryResidual, c.Observed - c.Expected);
    EXPECT_NEAR(double{summary.MaxLogitChange}, 1 - c.Discrimination, 1e-6);
  }
  scales.CategoryAnchor(kScale, 0) = CategoryAnchor::Anchored;
  const float held = scales.CategoryStep(kScale, 0);
  UpdateScales(OneModel(ModelType::Poisson), {Phase::Jmle, 1, 1e-30F}, scales, summary, largest);
  EXPECT_EQ(scales.CategoryStep(kScale, 0), held);
}

TEST(FairScore, IsOnTheRawCategoriesAndTurnsOverWithinThem) {
  ScaleTables scales = Counted({0, 0, 6, 5, 0, 4});
  ResponseKernel kernel(scales, 80);
  RenumberScale(kScale, ModelType::RatingScale, false, kernel, scales);  // 2, 3, 5
  const auto fair = [&](float measure, bool reversed) {
    return FairScore(kScale, ModelType::RatingScale, measure, reversed, scales, kernel);
  };
  EXPECT_FLOAT_EQ(fair(-30, false), 2);
  EXPECT_FLOAT_EQ(fair(0, false), (2 + 3 + 5) / 3.0F);
  EXPECT_FLOAT_EQ(fair(30, false), 5);
  EXPECT_FLOAT_EQ(fair(-30, true), 3);
  EXPECT_FLOAT_EQ(fair(30, true), 0);
}

}  // namespace
}  // namespace tessaly
