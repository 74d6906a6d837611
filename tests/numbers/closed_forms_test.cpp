// Estimates that can be written down, and estimates that others have published.
#include <gtest/gtest.h>

#include <cmath>

#include "fixture/design.h"

namespace tessaly {
namespace {

// With two items only persons with a score of 1 tell anything, and the joint estimate of the difference is twice the
// conditional one, ln (n10 / n01). Andersen, E. B. (1973). Conditional inference and models for measuring.
TEST(ClosedForms, TwoItems) {
  Design design({14, 2}, "?,?,D");
  for (int person = 1; person <= 14; ++person) {
    const int first = person <= 9 || person == 14 ? 1 : 0;
    const int second = person <= 9 || person == 13 ? 0 : 1;
    design.Ratings.push_back({{person, 1}, first});
    design.Ratings.push_back({{person, 2}, person == 14 ? 1 : second});
  }
  const FinishedAnalysis run = design.Run();  // 9 passed the first item alone, 3 the second; 13 and 14 are extreme
  EXPECT_NEAR(run.Measure(2, 2) - run.Measure(2, 1), 2 * std::log(9.0 / 3.0), 0.001);
  EXPECT_EQ(run.Status(1, 13), ElementStatus::Minimum);
  EXPECT_EQ(run.Status(1, 14), ElementStatus::Maximum);
  EXPECT_NEAR(run.StandardError(2, 1), 1 / std::sqrt(12 * 0.75 * 0.25), 0.001);
  // The adjusted score 0.3 of two items at +-ln 3.
  const auto logistic = [](double x) { return 1 / (1 + std::exp(-x)); };
  const double low = run.Measure(1, 13);
  EXPECT_NEAR(logistic(low - std::log(3.0)) + logistic(low + std::log(3.0)), 0.3, 0.001);
}

// Wins of the American League East, 1987. Agresti, A. (2002). Categorical Data Analysis, table 10.10: strengths against
// Baltimore, by the model of Bradley & Terry (1952).
TEST(ClosedForms, PairedComparisons) {
  constexpr int kWins[7][7] = {{0, 7, 9, 7, 7, 9, 11}, {6, 0, 7, 5, 11, 9, 9}, {4, 6, 0, 7, 7, 8, 12},
                               {6, 8, 6, 0, 6, 7, 10}, {6, 2, 6, 7, 0, 7, 12}, {4, 4, 5, 6, 6, 0, 6},
                               {2, 4, 1, 3, 1, 7, 0}};
  constexpr double kStrengths[] = {1.5814, 1.4364, 1.2945, 1.2476, 1.1077, 0.6839, 0};
  Design design({7}, "?,-?,D");
  design.Settings += "Entered=1,1\nNoncenter=0\n";
  for (int a = 0; a < 7; ++a) {
    for (int b = a + 1; b < 7; ++b) {
      design.Ratings.push_back({{a + 1, b + 1}, 1, double(kWins[a][b])});
      design.Ratings.push_back({{a + 1, b + 1}, 0, double(kWins[b][a])});
    }
  }
  const FinishedAnalysis run = design.Run();
  for (int team = 1; team <= 7; ++team)
    EXPECT_NEAR(run.Measure(1, team) - run.Measure(1, 7), kStrengths[team - 1], 0.001) << team;
}

TEST(ClosedForms, BinomialTrialsAreThatManyDichotomies) {
  const Design trials = [] {
    Design design = SimulatedDesign({15, 6}, 3, 21);
    design.Models = "?,?,B3";
    return design;
  }();
  Design single({15, 6}, "?,?,D");
  for (const Rating& rating : trials.Ratings)
    for (int trial = 0; trial < 3; ++trial)
      single.Ratings.push_back({rating.Elements, trial < rating.Response ? 1 : 0});
  const FinishedAnalysis a = trials.Run();
  const FinishedAnalysis b = single.Run();
  for (const auto& [facet, count] : {std::pair{1, 15}, {2, 6}}) {
    for (int number = 1; number <= count; ++number) {
      EXPECT_NEAR(a.Measure(facet, number), b.Measure(facet, number), 0.002);
      EXPECT_NEAR(a.StandardError(facet, number), b.StandardError(facet, number), 0.002);
    }
  }
}

// Counts of a complete table: ln m = row + column is fitted by m = row total x column total / total (Rasch 1960, the
// multiplicative Poisson model), so measures differ by the log of the totals and 1 / S.E.^2 is the total.
TEST(ClosedForms, PoissonCountsOfACompleteTable) {
  Design design({4, 3}, "?,?,P");
  constexpr int kCounts[4][3] = {{2, 5, 9}, {0, 3, 4}, {12, 20, 31}, {1, 1, 6}};
  double rows[4] = {};
  double columns[3] = {};
  for (int i = 0; i < 4; ++i) {
    for (int j = 0; j < 3; ++j) {
      design.Ratings.push_back({{i + 1, j + 1}, kCounts[i][j]});
      rows[i] += kCounts[i][j];
      columns[j] += kCounts[i][j];
    }
  }
  const FinishedAnalysis run = design.Run();
  ASSERT_TRUE(run.Finished());
  for (int i = 1; i < 4; ++i) {
    EXPECT_NEAR(run.Measure(1, i + 1) - run.Measure(1, 1), std::log(rows[i] / rows[0]), 0.001);
    EXPECT_NEAR(run.StandardError(1, i + 1), 1 / std::sqrt(rows[i]), 0.002);
  }
  for (int j = 1; j < 3; ++j)
    EXPECT_NEAR(run.Measure(2, 1) - run.Measure(2, j + 1), std::log(columns[j] / columns[0]), 0.001);
}

// A single element and a dummy: the thresholds carry the curvature of the log counts and the measure their slope, so
// that the model reproduces the counts.
// Each of two items is passed by its share of each person, so that every person has half of its score and every mean-
// square is 1. All additions to an item are of two sizes: rounded one by one in single precision they drift.
TEST(ClosedForms, FitOfManyEqualResponses) {
  Design design({20, 2}, "?,?,D");
  design.Settings += "Subsets=N\nConvergence=0.01,0.000001\n";
  constexpr int kRepeats = 5000;
  for (int repeat = 0; repeat < kRepeats; ++repeat) {
    for (int person = 1; person <= 20; ++person) {
      const int first = (repeat * 20 + person) % 5 < 3 ? 1 : 0;
      design.Ratings.push_back({{person, 1}, first});
      design.Ratings.push_back({{person, 2}, 1 - first});
    }
  }
  const FinishedAnalysis run = design.Run();
  for (const int item : {1, 2}) {
    const ElementFit& fit = run.Fit(2, item);
    EXPECT_NEAR(static_cast<double>(fit.InfitZStd), 0, 0.05);
    EXPECT_NEAR(static_cast<double>(fit.OutfitZStd), 0, 0.05);
    EXPECT_NEAR(static_cast<double>(fit.Displacement), 0, 0.0002);
    EXPECT_NEAR(static_cast<double>(fit.StandardError), 1 / std::sqrt(20 * kRepeats * 0.24), 1e-6);
  }
}

TEST(ClosedForms, ThresholdsOfOneElementAreLogRatiosOfCounts) {
  Design design({1, 1}, "?,?,R2");
  design.FacetFields = {"", ",D"};
  const double counts[] = {10, 25, 5};
  for (int k = 0; k < 3; ++k) design.Ratings.push_back({{1, 1}, k, counts[k]});
  const FinishedAnalysis run = design.Run();
  const std::vector<double> steps = run.Steps({0});
  ASSERT_EQ(steps.size(), 2U);
  EXPECT_NEAR(steps[1] - steps[0], std::log(25.0 / 5) - std::log(10.0 / 25), 0.001);
  EXPECT_NEAR(run.Measure(1, 1), -(std::log(10.0 / 25) + std::log(25.0 / 5)) / 2, 0.001);
}

}  // namespace
}  // namespace tessaly
