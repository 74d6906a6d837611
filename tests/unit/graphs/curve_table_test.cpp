#include "graphs/curve_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "unit/model/scale_bed.h"

namespace tessaly {
namespace {

MeasureGrid GridOf(std::int32_t low, std::int32_t high) {
  MeasureGrid grid;
  grid.Axis.FullMin = low;
  grid.Axis.FullMax = high;
  grid.Steps = 200;
  return grid;
}

double Logistic(double x) {
  return 1 / (1 + std::exp(-x));
}

// Every column against the definitions: P(k) ~ exp(k measure - cost of k).
TEST(CurveTable, CurvesOfAllModels) {
  struct Case {
    ModelType Type;
    std::vector<float> Steps;
    /// By category; counts go on behind the top.
    double (*Cost)(int);
    double Unit;
    int Computed;
  };
  const auto dichotomy = [](int k) { return 0.5 * k; };
  const auto rating = [](int k) { return std::vector{0.0, -1.0, -0.5, 0.5}[static_cast<std::size_t>(k)]; };
  const auto trials = [](int k) { return -std::log(std::vector{1, 4, 6, 4, 1}[static_cast<std::size_t>(k)]); };
  const auto steepTrials = [](int k) { return -2 * std::log(std::vector{1, 4, 6, 4, 1}[static_cast<std::size_t>(k)]); };
  const auto counts = [](int k) { return std::lgamma(k + 1.0); };
  const auto steepCounts = [](int k) { return 1.5 * std::lgamma(k + 1.0); };
  for (const Case& c : {
           Case{ModelType::RatingScale, {0, 0.5F}, dichotomy, 1, 1},
           Case{ModelType::Binomial, {1, 0.5F}, dichotomy, 10, 1},
           Case{ModelType::RatingScale, {0, -1, 0.5F, 1}, rating, 10, 3},
           Case{ModelType::Binomial, {1, 0, 0, 0, 0}, trials, 1, 4},
           Case{ModelType::Binomial, {2, 0, 0, 0, 0}, steepTrials, 1, 4},
           Case{ModelType::Poisson, {1, 0, 0, 0}, counts, 1, 305},
           Case{ModelType::Poisson, {1.5F, 0, 0, 0}, steepCounts, 1, 305},
       }) {
    const ScaleTables scales = OneScale(c.Steps);
    ResponseKernel kernel(scales, 80);
    const int top = static_cast<int>(c.Steps.size()) - 1;
    const GraphScale scale{kScale, c.Type, top, 2, {}, {}};
    const auto extent = static_cast<std::int32_t>(5 * c.Unit);
    const CurveTable table(scale, GridOf(-extent, extent), c.Unit, kernel);
    ASSERT_EQ(table.Rows(), 201);
    for (std::int32_t row = 1; row <= 201; ++row) {
      const double logit = -5 + (row - 1) * 0.05;
      EXPECT_NEAR(double{table.At(row, CurveTable::kMeasure)}, logit * c.Unit, 1e-5);
      std::vector<double> p;
      for (int k = 0; k <= c.Computed; ++k) p.push_back(std::exp(k * logit - c.Cost(k)));
      double sum = 0;
      double score = 0;
      double square = 0;
      for (const double term : p) sum += term;
      for (std::size_t k = 0; k < p.size(); ++k) {
        p[k] /= sum;
        score += static_cast<double>(k) * p[k];
        square += static_cast<double>(k * k) * p[k];
      }
      const double variance = square - score * score;
      const auto expect = [&](std::int32_t column, double value, double tolerance = 1e-5) {
        EXPECT_NEAR(double{table.At(row, column)}, value, tolerance) << row << " " << column;
      };
      expect(table.Expected(), score + 2, 1e-5 * (1 + score));
      expect(table.Information(), variance, 2e-5 * (1 + square));
      double below = 0;
      for (int k = 0; k <= top; ++k) {
        const double own = p[static_cast<std::size_t>(k)];
        expect(table.Probability(k), own);
        expect(table.CategoryInformation(k), own * variance, 2e-5 * (1 + square));
        if (k == top) break;
        expect(table.Cumulative(k), below += own);
        if (table.At(row, table.Probability(k)) > 1e-30F)
          expect(table.Conditional(k), Logistic(logit - c.Cost(k + 1) + c.Cost(k)));
      }
      EXPECT_GE(table.LargestInformation(), table.At(row, table.Information()));
    }
  }
}

TEST(CurveTable, UnobservedCategoriesHaveNoStep) {
  ScaleTables scales = OneScale({0, -1, 9, 1});
  scales.CategoryAnchor(kScale, 2) = CategoryAnchor::KeptUnobserved;
  ResponseKernel kernel(scales, 80);
  const CurveTable table({kScale, ModelType::RatingScale, 3, 0, {}, {}}, GridOf(-4, 4), 1, kernel);
  for (std::int32_t row = 1; row <= table.Rows(); ++row) {
    const double logit = double{table.At(row, CurveTable::kMeasure)};
    EXPECT_EQ(table.At(row, table.Probability(2)), 0);
    EXPECT_EQ(table.At(row, table.Conditional(1)), kNoCurveValue);
    EXPECT_EQ(table.At(row, table.Conditional(2)), kNoCurveValue);
    EXPECT_EQ(table.At(row, table.Cumulative(1)), table.At(row, table.Cumulative(2)));
    const double odds = double{table.At(row, table.Probability(3))} / double{table.At(row, table.Probability(1))};
    EXPECT_NEAR(std::log(odds), 2 * logit - 1, 1e-5);
  }
}

TEST(CurveTable, NearestRow) {
  std::mt19937 random(3);
  for (int round = 0; round < 3000; ++round) {
    std::vector<float> column(1 + random() % 30);
    for (float& value : column) value = static_cast<float>(random() % 40);
    std::sort(column.begin(), column.end());
    const float value = static_cast<float>(random() % 100) / 2 - 5;
    const float found = column.at(static_cast<std::size_t>(NearestGridRow(value, column) - 1));
    for (const float other : column) {
      ASSERT_LE(std::fabs(found - value), std::fabs(other - value));
      if (std::fabs(found - value) == std::fabs(other - value)) {
        ASSERT_LE(found, other) << "the lower of two as near";
      }
    }
  }
}

}  // namespace
}  // namespace tessaly
