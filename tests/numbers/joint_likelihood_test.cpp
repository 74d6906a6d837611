#include "numbers/joint_likelihood.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string_view>

namespace tessaly {
namespace {

void ExpectSame(const FinishedAnalysis& run, const LikelihoodProblem& problem, std::string_view what) {
  SCOPED_TRACE(what);
  ASSERT_TRUE(run.Finished()) << (run.Warnings.empty() ? "" : run.Warnings.back());
  const LikelihoodSolution solution = SolveJointLikelihood(problem);
  for (std::size_t f = 0; f < problem.Counts.size(); ++f) {
    const int facet = static_cast<int>(f) + 1;
    for (int number = 1; number <= problem.Counts[f]; ++number) {
      SCOPED_TRACE("facet " + std::to_string(facet) + " element " + std::to_string(number));
      const SolvedElement& own = solution.Elements[f][static_cast<std::size_t>(number - 1)];
      const ElementFit& fit = run.Fit(facet, number);
      EXPECT_EQ(Measurable(run.Status(facet, number)), !own.Extreme);
      EXPECT_NEAR(run.Measure(facet, number), own.Measure, 0.002);
      EXPECT_NEAR(run.StandardError(facet, number), own.StandardError, 0.002);
      EXPECT_NEAR(double{fit.InfitMeanSquare}, own.Infit, 0.005);
      EXPECT_NEAR(double{fit.OutfitMeanSquare}, own.Outfit, 0.005);
      EXPECT_NEAR(double{fit.InfitZStd}, std::clamp(own.InfitZ, -9.0, 9.0), 0.02);
      EXPECT_NEAR(double{fit.OutfitZStd}, std::clamp(own.OutfitZ, -9.0, 9.0), 0.02);
    }
  }
  for (std::size_t scale = 0; scale < solution.Steps.size(); ++scale) {
    const std::vector<double> steps = run.Steps(
        problem.OwnSteps < 0 ? run.ScaleOf() : run.ScaleOf(problem.OwnSteps + 1, static_cast<int>(scale) + 1));
    ASSERT_EQ(steps.size(), solution.Steps[scale].size());
    for (std::size_t k = 0; k < steps.size(); ++k) EXPECT_NEAR(steps[k], solution.Steps[scale][k], 0.002) << k;
  }
}

TEST(JointLikelihood, DichotomiesRatingScalesAndPartialCreditAgreeWithNewtonOnAllEquations) {
  struct Case {
    std::string_view What;
    std::vector<int> Counts;
    int Top;
    int OwnSteps;
  };
  for (const Case& c : {Case{"dichotomies", {25, 12}, 1, 0}, Case{"three facets of dichotomies", {12, 5, 4}, 1, 0},
                        Case{"rating scale", {20, 8}, 3, 0}, Case{"three facets of ratings", {10, 4, 4}, 4, 0},
                        Case{"partial credit", {60, 6}, 2, 2}, Case{"raters with their own use", {15, 4, 3}, 3, 3}}) {
    const Design design = SimulatedDesign(c.Counts, c.Top, 11, 0.1, c.OwnSteps);
    LikelihoodProblem problem(design, c.Top);
    problem.OwnSteps = c.OwnSteps - 1;
    ExpectSame(design.Run(), problem, c.What);
  }
}

TEST(JointLikelihood, WeightsOfDataLinesModelsAndElementsEnterOnce) {
  Design design = SimulatedDesign({18, 7}, 3, 5);
  LikelihoodProblem problem(design, 3);
  for (std::size_t i = 0; i < design.Ratings.size(); i += 3) {
    design.Ratings[i].Replication = problem.Ratings[i].Replication = i % 2 == 0 ? 2.5 : 0.5;
  }
  design.Models = "?,?,R3,1.5";
  for (Rating& rating : problem.Ratings) rating.Replication *= 1.5;
  for (const auto& [facet, number, weight] : {std::tuple{1, 3, 2.0}, {2, 2, 0.25}, {2, 5, 3.0}}) {
    design.Field(facet, number) = ",,," + NumberText(weight);
    problem.Weights[static_cast<std::size_t>(facet - 1)][static_cast<std::size_t>(number - 1)] = weight;
  }
  ExpectSame(design.Run(), problem, "weights");
}

TEST(JointLikelihood, ExtremeScoresAreMeasuredTheirAdjustmentInsideTheRange) {
  // Large weights must not lead the starting values of extreme elements astray.
  for (const auto& [adjustment, weight] : {std::pair{0.3, 1.0}, {0.5, 1.0}, {0.1, 1.0}, {0.3, 60.0}, {0.3, 1000.0}}) {
    Design design = SimulatedDesign({20, 6, 3}, 2, 8, 0);
    // Persons 1 and 2 at the ends, rater 1 gives the highest category to everybody: then item 6 falls to person 3
    // alone.
    for (Rating& rating : design.Ratings) {
      int& x = rating.Response;
      if (rating.Elements[0] == 1) x = 0;
      if (rating.Elements[0] == 2 || (rating.Elements[2] == 1 && rating.Elements[0] != 1)) x = 2;
      if (rating.Elements[1] == 6) x = rating.Elements[0] == 2 ? 2 : 0;
      if (rating.Elements[0] == 4) rating.Replication = 0.5;
    }
    design.Settings += "Xtreme=" + NumberText(adjustment) + "\n";
    LikelihoodProblem problem(design, 2);
    problem.Xtreme = adjustment;
    for (Rating& rating : problem.Ratings) rating.Replication *= weight;
    if (weight != 1) design.Models += "," + NumberText(weight);
    ExpectSame(design.Run(), problem, NumberText(adjustment) + " " + NumberText(weight));
  }
}

// P(k) ~ exp(k measure - s T(k)): at the estimates the statistic T of a discrimination s is what it is expected to be.
TEST(JointLikelihood, DiscriminationsOfTrialsAndCountsSolveTheirEquation) {
  for (const bool counts : {false, true}) {
    Design design = SimulatedDesign({12, 4}, 4, 17);
    design.Models = "?,?,Own";
    design.Blocks = std::string("Rating scale=Own,") + (counts ? "P" : "B4") + "\n0,none\n*\n";
    const FinishedAnalysis run = design.Run();
    ASSERT_TRUE(run.Finished());
    const double s = double{run.A.Scales.CategoryStep({0}, 0)};
    EXPECT_GT(std::fabs(s - 1), 0.05);
    const auto t = [&](int k) { return std::lgamma(k + 1.0) + (counts ? 0 : std::lgamma(5.0 - k) - std::lgamma(5.0)); };
    double residual = 0;
    for (const Rating& rating : design.Ratings) {
      if (!Measurable(run.Status(1, rating.Elements[0]))) continue;
      const double measure = run.Measure(1, rating.Elements[0]) - run.Measure(2, rating.Elements[1]);
      double total = 0;
      double expected = 0;
      for (int k = 0; k <= (counts ? 60 : 4); ++k) {
        const double p = std::exp(k * measure - s * t(k));
        total += p;
        expected += p * t(k);
      }
      residual += t(rating.Response) - expected / total;
    }
    EXPECT_NEAR(residual, 0, 0.005);
    for (int item = 1; item <= 4; ++item) EXPECT_NEAR(double{run.Fit(2, item).Displacement}, 0, 0.001);
  }
}

// Bitterness of wine: nine judges, two bottles of each of four treatments. Randall, J. (1989). The analysis of sensory
// data by generalised linear model. Biometrical Journal 7, 781-793.
TEST(JointLikelihood, WineAgreesWithNewtonOnAllEquations) {
  constexpr std::string_view kRatings[] = {"23344455", "12132354", "23325544", "32323253", "23433333",
                                           "32322454", "11222323", "22233334", "12323244"};
  Design design({9, 2, 2, 8}, "?,?,?,?,R5");
  design.Settings += "Positive=2,3\n";
  design.FacetFields[3] = ",D";
  for (int judge = 1; judge <= 9; ++judge)
    for (int bottle = 1; bottle <= 8; ++bottle)
      design.Ratings.push_back({{judge, 1 + (bottle - 1) / 4, 1 + (bottle - 1) / 2 % 2, bottle},
                                kRatings[judge - 1][static_cast<std::size_t>(bottle - 1)] - '0'});
  const FinishedAnalysis run = design.Run();
  LikelihoodProblem problem(design, 4);
  for (Rating& rating : problem.Ratings) --rating.Response;
  problem.Signs = {-1, 1, 1, -1};
  problem.Dummy[3] = true;
  ExpectSame(run, problem, "wine");
  EXPECT_EQ(run.A.Scales.Scales[{0}].ScaleBottomRaw, 1);
}

}  // namespace
}  // namespace tessaly
