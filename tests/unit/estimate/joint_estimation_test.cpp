// Whole analyses whose course or outcome is known beforehand.
#include "estimate/joint_estimation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "estimate/priorities.h"
#include "fixture/design.h"

namespace tessaly {
namespace {

/// A complete design of twelve persons and five items without extreme scores.
Design Crossed() {
  constexpr std::string_view kSuccesses[] = {"11110", "11101", "11010", "10110", "11000", "01100",
                                             "10010", "00011", "10000", "01000", "00100", "10001"};
  Design design({12, 5}, "?,?,D");
  for (int person = 1; person <= 12; ++person)
    for (int item = 1; item <= 5; ++item)
      design.Ratings.push_back({{person, item}, kSuccesses[person - 1][static_cast<std::size_t>(item - 1)] - '0'});
  return design;
}

/// "PPJ": two rows of PROX, one of JMLE.
std::string Stages(const FinishedAnalysis& run) {
  std::string stages;
  for (const std::string& message : run.Messages)
    if (message.starts_with("| PROX") || message.starts_with("| JMLE")) stages += message[2];
  return stages;
}

double MeanOf(const FinishedAnalysis& run, int facet, int first, int last) {
  double sum = 0;
  for (int number = first; number <= last; ++number) sum += run.Measure(facet, number);
  return sum / (last - first + 1);
}

TEST(JointEstimation, SaysWhenTheFrameIsHeldTwiceOrNotAtAll) {
  const std::string over = "Warning (7)! Over-constrained?  Noncenter= not in effect";
  const std::string under = "Warning (8)! Under-constrained?  Noncenter= for two or more facets";
  struct Case {
    std::string_view Setting;
    bool FirstAnchored;
    std::string Warning;
  };
  for (const Case& c : {Case{"", false, ""}, Case{"Noncenter=\n", false, over}, Case{"Noncenter=1,2\n", false, under},
                        Case{"", true, over}, Case{"Noncenter=2\n", true, ""}}) {
    Design design = Crossed();
    design.Settings += c.Setting;
    if (c.FirstAnchored) design.FacetFields[0] = ",A";
    if (c.FirstAnchored) design.Field(1, 1) = ",0.5";
    const FinishedAnalysis run = design.Run();
    EXPECT_TRUE(run.Finished());
    EXPECT_EQ(run.Warns(over), c.Warning == over) << c.Setting;
    EXPECT_EQ(run.Warns(under), c.Warning == under) << c.Setting;
    // Once when it is found and once at the end, on the screen and in the report.
    if (c.Warning.empty()) continue;
    EXPECT_EQ(std::count(run.Warnings.begin(), run.Warnings.end(), c.Warning), 2);
    EXPECT_NE(run.Report.find(c.Warning), run.Report.rfind(c.Warning));
  }
}

TEST(JointEstimation, GoesThroughItsStages) {
  const FinishedAnalysis usual = Crossed().Run();
  EXPECT_EQ(Stages(usual).substr(0, 3), "PPJ");
  EXPECT_EQ(Stages(usual).rfind('P'), 1U);
  // However far the second pass moves, there is no third. (Weights are squared in the spread of measures.)
  Design heavy = Crossed();
  for (Rating& rating : heavy.Ratings) rating.Replication = 100;
  EXPECT_EQ(Stages(heavy.Run({"Iterations=5"})), "PPJJJ");
  // With nothing left floating, and for counts, there is no PROX behind the recount.
  Design held = Crossed();
  held.Settings += "Noncenter=\n";
  EXPECT_EQ(Stages(held.Run()).substr(0, 2), "PJ");
  Design counts = Crossed();
  counts.Models = "?,?,P";
  EXPECT_EQ(Stages(counts.Run()).substr(0, 2), "PJ");
  // Persons 9 to 11 fail on all they try. Without them item 5 is left with the success of person 12: counts are made
  // anew twice, and JMLE goes on at once.
  Design late = Crossed();
  std::erase_if(late.Ratings,
                [](const Rating& r) { return r.Elements[1] == 5 || (r.Elements[0] >= 9 && r.Elements[0] <= 11); });
  for (int person = 9; person <= 11; ++person)
    for (const int item : {4, 5}) late.Ratings.push_back({{person, item}, 0});
  late.Ratings.push_back({{12, 5}, 1});
  const FinishedAnalysis dropped = late.Run();
  EXPECT_EQ(Stages(dropped).substr(0, 4), "PPPJ");
  EXPECT_EQ(dropped.Status(1, 10), ElementStatus::Minimum);
  EXPECT_EQ(dropped.Status(2, 5), ElementStatus::Minimum);
  // Totals for the reports are those of the first pass.
  EXPECT_EQ(dropped.Stats(2, 5).AllCount, 4);
  EXPECT_EQ(dropped.Stats(2, 5).ObservedCount, 1);
}

TEST(JointEstimation, StopsAtItsLimitAndSaysSoOnlyIfMoreWasAskedFor) {
  const std::string line = "'Iterations= 5' reached.  'Iterations=0' removes limit";
  const FinishedAnalysis limited = Crossed().Run({"Iterations=5"});
  EXPECT_EQ(limited.Iterations(), 5);
  EXPECT_TRUE(limited.Reports(line));
  const int needed = Crossed().Run().Iterations();
  const FinishedAnalysis enough = Crossed().Run({"Iterations=" + NumberText(needed)});
  EXPECT_EQ(enough.Iterations(), needed);
  EXPECT_EQ(enough.Report.find("removes limit"), std::string::npos);
  // A criterion that cannot be met: standing still ends it.
  const FinishedAnalysis still = Crossed().Run({"Convergence=0,0.00000001"});
  EXPECT_TRUE(still.Finished());
  EXPECT_GT(still.Iterations(), needed);
  // No criterion at all: the same, and not the first iteration's estimates.
  const FinishedAnalysis without = Crossed().Run({"Convergence=0,0,0,0"});
  EXPECT_EQ(without.Iterations(), still.Iterations());
}

TEST(JointEstimation, TellsOnceWhatEndsIterationsWithoutEnd) {
  const auto run = [](const std::string& limit) {
    return Crossed().Run({"Newton=0.005", "Convergence=0.001", "Iterations=" + limit});
  };
  const std::string line =
      "Not converged after 1000 iterations: from here on each 1000th is shown. Iterations= limits them, Ctrl+F goes on "
      "to the report";
  const FinishedAnalysis longer = run("1200");
  EXPECT_EQ(longer.Iterations(), 1001);  // the first thousand and the last
  EXPECT_EQ(std::count(longer.Messages.begin(), longer.Messages.end(), line), 1);
  EXPECT_TRUE(std::any_of(longer.Messages.begin(), longer.Messages.end(),
                          [](const std::string& message) { return message.starts_with("| JMLE1200 "); }));
  const FinishedAnalysis shorter = run("999");
  EXPECT_EQ(std::count(shorter.Messages.begin(), shorter.Messages.end(), line), 0);
}

TEST(JointEstimation, HaltsWhenAllDataAreExtreme) {
  Design design({2, 3}, "?,?,D");
  for (int person = 1; person <= 2; ++person)
    for (int item = 1; item <= 3; ++item) design.Ratings.push_back({{person, item}, 1});
  const FinishedAnalysis run = design.Run();
  EXPECT_EQ(run.Outcome, Outcome::Halted);
  const std::string text =
      "All data eliminated as extreme.  Dropped elements - first: facet 1 element 1 \"Element 1\" - "
      "last: facet 2 element 3 \"Element 3\"";
  EXPECT_TRUE(std::any_of(run.Warnings.begin(), run.Warnings.end(), [&](const std::string& warning) {
    return warning.starts_with("Error F36") && warning.find(text) != std::string::npos;
  })) << run.Warnings.back();
}

// Starting values must come from the right side: at 160 logits from its place the score curve is flat.
TEST(JointEstimation, FarAnchorsTakeTheFreeElementsAlongUpToTheEndOfTheRange) {
  for (const double far : {50.0, -60.0, 79.9}) {
    Design design = Crossed();
    design.FacetFields[1] = ",A";
    for (int item = 1; item <= 5; ++item) design.Field(2, item) = "," + NumberText(far);
    const FinishedAnalysis run = design.Run({"Iterations=30", "Convergence=0.01,0.001"});
    const bool cut = far > 79;
    EXPECT_NEAR(run.Measure(1, 1), cut ? 80 : far + std::log(4.0), 0.005);  // 4 of 5
    EXPECT_NEAR(run.Measure(1, 9), far - std::log(4.0), 0.005);
    EXPECT_EQ(run.Warns("Warning (1)! Estimate out of range!  Facet 1 Element 1"), cut);
  }
}

TEST(Priorities, AscendFromOneAndTakeZeroOnlyIfThereIsNothingElse) {
  struct Case {
    std::vector<int> Given, Sequence;
  };
  for (const Case& c : {Case{{1, 1}, {1}}, Case{{2, 1, 2}, {1, 2}}, Case{{0, 0}, {0}}, Case{{0, 3}, {3}},
                        Case{{7, 0, 1}, {1, 7}}, Case{{}, {0}}}) {
    FacetTable facets(static_cast<std::int32_t>(c.Given.size()) + 1);
    facets[{1}].FacetPriority = 5;  // without elements
    for (std::size_t i = 0; i < c.Given.size(); ++i) {
      facets[{static_cast<std::int32_t>(i) + 2}].FacetPriority = c.Given[i];
      facets[{static_cast<std::int32_t>(i) + 2}].FacetElementCount = 1;
    }
    Priorities priorities(facets);
    std::vector<int> sequence;
    while (const auto next = priorities.Next()) sequence.push_back(*next);
    EXPECT_EQ(sequence, c.Sequence);
    EXPECT_EQ(priorities.PriorityChanges(), static_cast<int>(c.Sequence.size()) - 1);
  }
}

TEST(JointEstimation, AFacetOfEarlierPriorityIsMeasuredAsIfTheOthersStoodAtZero) {
  Design design = Crossed();
  design.FacetFields = {"", ",,2"};
  const FinishedAnalysis run = design.Run();
  for (int person = 1; person <= 12; ++person) {
    const ElementRecord& stats = run.Stats(1, person);
    EXPECT_NEAR(run.Measure(1, person), std::log(stats.ObservedScore / (stats.PossibleScore - stats.ObservedScore)),
                0.001);
  }
  for (int item = 1; item <= 5; ++item) EXPECT_NE(run.Measure(2, item), 0);
  EXPECT_TRUE(run.Reports(" Priority: 2"));
  EXPECT_NE(run.Report.find(". Estimation priority: 2."), std::string::npos);
}

TEST(JointEstimation, GroupsHoldTheirMeansAndMembersKeepTheirDistances) {
  const FinishedAnalysis free = Crossed().Run();
  for (const char type : {'G', 'X'}) {
    Design design = Crossed();
    design.FacetFields[1] = std::string(",") + type;
    const double values[] = {1.5, 2, 2.5, 1, 3};  // mean 2
    for (int item = 1; item <= 5; ++item) design.Field(2, item) = "," + NumberText(values[item - 1]) + ",1";
    const FinishedAnalysis one = design.Run();
    for (int item = 1; item <= 5; ++item) EXPECT_NEAR(one.Measure(2, item), free.Measure(2, item) + 2, 0.001);
    design.Field(2, 5) = ",0.75,2";
    const FinishedAnalysis two = design.Run();
    EXPECT_NEAR(MeanOf(two, 2, 1, 4), 1.75, 0.0005);
    EXPECT_EQ(two.Measure(2, 5), 0.75);
    EXPECT_GT(std::fabs(two.Measure(2, 1) - two.Measure(2, 3)), 0.1);
  }
}

TEST(JointEstimation, ExtremeElementsCountInTheCenterIfAskedFor) {
  for (const bool extremes : {false, true}) {
    Design design = Crossed();
    for (Rating& rating : design.Ratings)
      if (rating.Elements[1] == 5) rating.Response = 0;
    design.Settings += extremes ? "Center=2Z\n" : "Center=2\n";
    const FinishedAnalysis run = design.Run();
    EXPECT_EQ(run.Status(2, 5), ElementStatus::Maximum);
    EXPECT_NEAR(MeanOf(run, 2, 1, extremes ? 5 : 4), 0, 0.001);
    EXPECT_GT(std::fabs(MeanOf(run, 2, 1, extremes ? 4 : 5)), 0.2);
  }
}

TEST(JointEstimation, AKeptCategoryStaysInTheStructureWithoutProbability) {
  Design design = SimulatedDesign({20, 5}, 4, 6, 0);
  for (Rating& rating : design.Ratings)
    if (rating.Response == 2) rating.Response = 3;
  const FinishedAnalysis closed = design.Run();
  design.Models = "?,?,R4K";
  const FinishedAnalysis kept = design.Run();
  EXPECT_EQ(closed.Steps({0}).size(), 3U);
  ASSERT_EQ(kept.Steps({0}).size(), 4U);
  EXPECT_EQ(kept.A.Scales.CategoryAnchor({0}, 2), CategoryAnchor::KeptUnobserved);
  for (const int k : {0, 1, 3, 4})
    EXPECT_NEAR(kept.A.Scales.CategoryCount({0}, k), kept.A.Scales.CategoryExpected({0}, k), 0.001);
  EXPECT_EQ(kept.A.Scales.CategoryExpected({0}, 2), 0);
  double score = 0;
  for (const Rating& rating : design.Ratings) score += rating.Elements[1] == 1 ? rating.Response : 0;
  EXPECT_EQ(kept.Stats(2, 1).ObservedScore, score);
  EXPECT_LT(closed.Stats(2, 1).ObservedScore, score);
}

TEST(FitPass, RealErrorsFairAveragesAndDisplacements) {
  const FinishedAnalysis run = Crossed().Run();
  const FinishedAnalysis real = Crossed().Run({"Standard=Real", "Fair=Zero", "Whexact=N"});
  const auto logistic = [](double x) { return 1 / (1 + std::exp(-x)); };
  for (int item = 1; item <= 5; ++item) {
    const ElementFit& fit = run.Fit(2, item);
    EXPECT_NEAR(real.StandardError(2, item),
                run.StandardError(2, item) * std::sqrt(std::max(1.0, double{fit.InfitMeanSquare})), 1e-5);
    EXPECT_NEAR(double{fit.InfitZStd - real.Fit(2, item).InfitZStd}, std::sqrt(2 / double{fit.InfitFreedom}) / 3, 1e-4);
    // Among average persons, and among persons at 0.
    const auto average = [&](const FinishedAnalysis& of) {
      return double{of.Fit(2, item).FairScoreSum} / of.Stats(2, item).ObservedCount;
    };
    EXPECT_NEAR(average(run), logistic(MeanOf(run, 1, 1, 12) - run.Measure(2, item)), 1e-4);
    EXPECT_NEAR(average(real), logistic(-run.Measure(2, item)), 1e-4);
  }
  // An item anchored a fifth of a logit too high: fewer successes expected, and the displacement leads back.
  Design anchored = Crossed();
  anchored.FacetFields[1] = ",A";
  for (int item = 1; item <= 5; ++item)
    anchored.Field(2, item) = "," + NumberText(run.Measure(2, item) + (item == 2 ? 0.2 : 0));
  const FinishedAnalysis displaced = anchored.Run();
  EXPECT_NEAR(double{displaced.Fit(2, 2).Displacement}, 0.2, 0.06);
  EXPECT_EQ(displaced.Status(2, 2), ElementStatus::Anchored);
}

TEST(ScaleOrder, GoesByElementNumbersNotByTheOrderInWhichDataMetThem) {
  Design design = SimulatedDesign({15, 4}, 2, 9, 0, 2);
  std::reverse(design.Ratings.begin(), design.Ratings.end());
  const FinishedAnalysis run = design.Run();
  ASSERT_EQ(run.A.Scales.ScaleOrder.size(), 4U);
  for (int item = 1; item <= 4; ++item)
    EXPECT_EQ(run.A.Scales.ScaleOrder[static_cast<std::size_t>(item - 1)], run.ScaleOf(2, item));
  EXPECT_NE(run.ScaleOf(2, 1), ScaleNumber{0});
}

}  // namespace
}  // namespace tessaly
