#include "model/response_kernel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

#include "model/inverse_search.h"
#include "model/response_moments.h"
#include "unit/model/scale_bed.h"

namespace tessaly {
namespace {

using Vector = std::vector<double>;

/// P(k) ~ exp(k measure - T(k)), k = 0..top, in double.
Vector Reference(int top, double measure, const std::function<double(int)>& t) {
  Vector p;
  for (int k = 0; k <= top; ++k) p.push_back(k * measure - t(k));
  const double highest = *std::max_element(p.begin(), p.end());
  double total = 0;
  for (double& term : p) total += term = std::exp(term - highest);
  for (double& term : p) term /= total;
  return p;
}

double Expected(const Vector& p, const std::function<double(int)>& value) {
  double sum = 0;
  for (std::size_t k = 0; k < p.size(); ++k) sum += p[k] * value(static_cast<int>(k));
  return sum;
}

struct Model {
  std::string_view What;
  ModelType Type;
  int Top;
  int ComputedTop;
  std::vector<float> Steps;
  std::function<double(int)> T;
};

std::vector<Model> Models() {
  const auto lnChoose = [](int n, int k) {
    return std::lgamma(n + 1.0) - std::lgamma(k + 1.0) - std::lgamma(n - k + 1.0);
  };
  const auto lnFactorial = [](int k) { return std::lgamma(k + 1.0); };
  return {
      {"dichotomy", ModelType::Binomial, 1, 1, {1, 0.7F}, [](int k) { return k * 0.7; }},
      {"ratings",
       ModelType::RatingScale,
       4,
       4,
       {0, -1.5F, 0.25F, -0.5F, 1.75F},
       [](int k) {
         return Vector{0, -1.5, -1.25, -1.75, 0}[static_cast<std::size_t>(k)];
       }},
      {"trials", ModelType::Binomial, 7, 7, {1, 0, 0, 0, 0, 0, 0, 0}, [=](int k) { return -lnChoose(7, k); }},
      {"flat trials",
       ModelType::Binomial,
       7,
       7,
       {0.4F, 0, 0, 0, 0, 0, 0, 0},
       [=](int k) { return -0.4 * lnChoose(7, k); }},
      {"counts to 4", ModelType::Poisson, 4, 10, {1, 0, 0, 0, 0}, lnFactorial},
      {"counts to 5", ModelType::Poisson, 5, 10, {1.5F, 0, 0, 0, 0, 0}, [=](int k) { return 1.5 * lnFactorial(k); }},
      {"counts to 255", ModelType::Poisson, 255, kProbabilityTop, std::vector<float>(256, 1), lnFactorial}};
}

TEST(ResponseKernel, ProbabilitiesExpectationsAndMomentsAreThoseOfTheFormulas) {
  for (const Model& model : Models()) {
    const ScaleTables scales = OneScale(model.Steps);
    ResponseKernel kernel(scales, 80);
    for (const double m : {-6.0, -1.25, 0.0, 0.5, 2.75}) {
      SCOPED_TRACE(std::string(model.What) + " at " + std::to_string(m));
      const auto single = static_cast<float>(m);
      const float e = kernel.CategoryProbabilities(kScale, model.Type, model.Top, single);
      ASSERT_EQ(kernel.ComputedTop(), model.ComputedTop);
      const Vector p = Reference(model.ComputedTop, m, model.T);
      for (int k = 0; k <= model.ComputedTop; ++k)
        EXPECT_NEAR(double{kernel.Probability(k)}, p[static_cast<std::size_t>(k)], 3e-6) << k;
      EXPECT_EQ(kernel.Probability(model.ComputedTop + 1), 0.0F);
      const bool closedPoisson = model.Type == ModelType::Poisson && model.Steps[0] == 1;
      const double expected = closedPoisson ? std::exp(m) : Expected(p, [](int k) { return k; });
      EXPECT_NEAR(double{e}, expected, 1e-5 * (1 + expected));

      const LogOdds odds = kernel.LogOddsMoments(kScale, model.Type, model.Top, single, 1, kernel.Table());
      const auto s = [&](int k) { return k * m - model.T(k); };
      EXPECT_NEAR(double{odds.Mean}, Expected(p, s), 1e-4 * (1 + std::fabs(Expected(p, s))));
      const double square = Expected(p, [&](int k) { return s(k) * s(k); });
      EXPECT_NEAR(double{odds.MeanSquare}, square, 1e-4 * (1 + square));
      EXPECT_NEAR(double{odds.AtObserved}, s(1), 1e-5);

      if (model.Type == ModelType::Poisson) continue;  // counts stop short of their distribution
      const ResponseMoments moments = ObservationMoments(kernel.Table(), model.Top, 1, e);
      const auto central = [&](int power) { return Expected(p, [&](int k) { return std::pow(k - expected, power); }); };
      EXPECT_NEAR(double{moments.ResponseVariance}, central(2), 2e-5);
      EXPECT_NEAR(double{moments.ResidualVarianceTerm}, central(4) - central(2) * central(2), 2e-3);
      EXPECT_NEAR(double{moments.ResponseResidual}, 1 - expected, 1e-5);
      if (central(2) < 0.05) continue;
      EXPECT_NEAR(double{moments.ResidualSquareZ}, (1 - expected) * (1 - expected) / central(2), 2e-3);
      EXPECT_NEAR(double{moments.KurtosisRatio} * central(2) * central(2) / central(4), 1, 1e-3);
    }
  }
}

TEST(ResponseKernel, AThresholdIsWhereTwoNeighbouringCategoriesCross) {
  const ScaleTables scales = OneScale({0, -1.5F, 0.25F, -0.5F, 1.75F});
  ResponseKernel kernel(scales, 80);
  for (int k = 1; k <= 4; ++k) {
    kernel.CategoryProbabilities(kScale, ModelType::RatingScale, 4, scales.CategoryStep(kScale, k));
    EXPECT_FLOAT_EQ(kernel.Probability(k - 1), kernel.Probability(k));
  }
}

TEST(ResponseKernel, HoldsAtTheEndsOfTheRange) {
  ScaleTables scales = OneScale({1, 0, 0});
  ResponseKernel kernel(scales, 80);
  const auto at = [&](ModelType type, int top, float measure) {
    return kernel.CategoryProbabilities(kScale, type, top, measure);
  };
  EXPECT_EQ(at(ModelType::RatingScale, 2, 0), 1);
  EXPECT_FLOAT_EQ(kernel.Probability(0), 1 / 3.0F);
  EXPECT_EQ(at(ModelType::RatingScale, 2, 1000), 2);
  EXPECT_EQ(kernel.Probability(0) + kernel.Probability(1), 0);
  EXPECT_EQ(at(ModelType::RatingScale, 2, -1000), 0);
  EXPECT_EQ(kernel.Probability(0), 1);
  // An all-or-none table has no variance: 1e-9 stands in for it.
  const ResponseMoments moments = ObservationMoments(kernel.Table(), 2, 1, 0);
  EXPECT_EQ(moments.ResponseVariance, 0);
  EXPECT_FLOAT_EQ(moments.ResidualSquareZ, 1e9F);
  EXPECT_EQ(at(ModelType::Binomial, 1, 1000), 1);
  EXPECT_FLOAT_EQ(at(ModelType::Binomial, 1, -1000), static_cast<float>(1 / (std::exp(80.0) + 1)));  // not 0
  EXPECT_EQ(at(ModelType::Poisson, 2, 10), 255);
  EXPECT_EQ(at(ModelType::Poisson, 2, 1000), 255);
  EXPECT_FLOAT_EQ(at(ModelType::Binomial, 2, -1000), static_cast<float>(2 / (std::exp(80.0) + 1)));
}

TEST(ResponseKernel, AKeptCategoryHasNoProbabilityAndTheStepsBesideItSpanTwo) {
  ScaleTables scales = OneScale({0, -0.5F, 9, 0.75F});
  scales.CategoryAnchor(kScale, 2) = CategoryAnchor::KeptUnobserved;
  ResponseKernel kernel(scales, 80);
  const double m = 0.4;
  const float e = kernel.CategoryProbabilities(kScale, ModelType::RatingScale, 3, 0.4F);
  const double terms[] = {1, std::exp(m + 0.5), std::exp(3 * m + 0.5 - 0.75)};
  const double total = terms[0] + terms[1] + terms[2];
  EXPECT_EQ(kernel.Probability(2), 0);
  EXPECT_NEAR(double{kernel.Probability(3)}, terms[2] / total, 3e-6);
  EXPECT_NEAR(double{e}, (terms[1] + 3 * terms[2]) / total, 1e-5);
  const LogOdds odds = kernel.LogOddsMoments(kScale, ModelType::RatingScale, 3, 0.4F, 3, kernel.Table());
  EXPECT_NEAR(double{odds.AtObserved}, 3 * m + 0.5 - 0.75, 1e-6);
}

TEST(ResponseKernel, DiscriminationStatisticsAndLogRatios) {
  const ScaleTables scales = OneScale({1, 0, 0, 0, 0, 0});
  const ResponseKernel kernel(scales, 80);
  EXPECT_NEAR(kernel.DiscriminationStatistic(ModelType::Binomial, 5, 2), -std::log(10.0), 1e-12);
  EXPECT_NEAR(kernel.DiscriminationStatistic(ModelType::Binomial, 5, 5), 0, 1e-12);
  EXPECT_NEAR(kernel.DiscriminationStatistic(ModelType::Poisson, 5, 4), std::log(24.0), 1e-6);
  EXPECT_FLOAT_EQ(LogRatio(6, 3, 5, 2, 1e-30F), std::log(5.0F));
  EXPECT_FLOAT_EQ(LogRatio(0, 1, 1, 1, 1e-30F), std::log(1e-30F));
  EXPECT_FLOAT_EQ(LogRatio(-4, -4, 1, 1, 1e-30F), 0);
}

TEST(InverseSearch, FindsTheMeasureOfAScoreAndOfACumulativeProbability) {
  for (const Model& model : Models()) {
    if (model.Top > 10) continue;
    SCOPED_TRACE(model.What);
    const ScaleTables scales = OneScale(model.Steps);
    ResponseKernel kernel(scales, 80);
    for (const float share : {0.15F, 0.5F, 0.8F}) {
      const float score = share * static_cast<float>(model.Top);
      const ScoreSearch found = MeasureForScore(kernel, kScale, model.Type, model.Top, score);
      const auto nearest = static_cast<std::int32_t>(std::lround(score));
      EXPECT_NEAR(double{kernel.CategoryProbabilities(kScale, model.Type, model.Top, found.Measure)}, double{score},
                  1e-5);
      EXPECT_NEAR(double{found.Probability}, double{kernel.Probability(nearest)}, 1e-6);
      const float at = MeasureForCumulative(kernel, kScale, model.Type, model.Top, 0.4F, share);
      kernel.CategoryProbabilities(kScale, model.Type, model.Top, at);
      EXPECT_NEAR(double{kernel.Probability(0)}, double{share}, 1e-5);
    }
    // A score nobody can have: the search ends all the same, far out.
    EXPECT_LT(MeasureForScore(kernel, kScale, model.Type, model.Top, -1).Measure, -5);
    EXPECT_EQ(MeasureForScore(kernel, kScale, model.Type, model.Top, 400).Probability, 0);
  }
}

}  // namespace
}  // namespace tessaly
