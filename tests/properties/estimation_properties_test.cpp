// What must hold for any analysis, shown on generated ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

#include "fixture/design.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

struct Generated {
  std::string What;
  tessaly::Design Design;
};

/// Designs with extreme persons, missing cells, scales of their own, three facets, and all kinds of counts.
std::vector<Generated> GeneratedDesigns() {
  std::vector<Generated> designs;
  for (const unsigned seed : {1U, 2U}) {
    designs.push_back({"dichotomies", SimulatedDesign({24, 7}, 1, seed, 0.2)});
    designs.push_back({"rating scale", SimulatedDesign({14, 5, 3}, 3, seed, 0.3)});
    designs.push_back({"partial credit", SimulatedDesign({40, 4}, 2, seed, 0.1, 2)});
    designs.push_back({"binomial trials", SimulatedDesign({16, 6}, 4, seed)});
    designs.back().Design.Models = "?,?,B4";
  }
  designs.push_back({"Poisson counts", SimulatedDesign({10, 5}, 6, 3)});
  designs.back().Design.Models = "?,?,P";
  return designs;
}

void ForEachElement(const Design& design, const std::function<void(int, int)>& visit) {
  for (std::size_t facet = 0; facet < design.Counts.size(); ++facet) {
    for (int number = 1; number <= design.Counts[facet]; ++number) {
      SCOPED_TRACE("facet " + NumberText(double(facet + 1)) + " element " + NumberText(number));
      visit(static_cast<int>(facet) + 1, number);
    }
  }
}

void ExpectSameSteps(const FinishedAnalysis& a, const FinishedAnalysis& b, double tolerance) {
  ASSERT_EQ(a.A.Scales.ScaleOrder.size(), b.A.Scales.ScaleOrder.size());
  for (std::size_t at = 0; at < a.A.Scales.ScaleOrder.size(); ++at) {
    const std::vector<double> one = a.Steps(a.A.Scales.ScaleOrder[at]);
    const std::vector<double> other = b.Steps(b.A.Scales.ScaleOrder[at]);
    ASSERT_EQ(one.size(), other.size());
    for (std::size_t k = 0; k < one.size(); ++k) EXPECT_NEAR(one[k], other[k], tolerance);
  }
}

/// The same measures, standard errors and fit in both; `number` tells where an element of `a` is in `b`.
void ExpectSameResults(
    const Design& design, const FinishedAnalysis& a, const FinishedAnalysis& b, double tolerance,
    const std::function<int(int, int)>& number = [](int, int own) { return own; }) {
  ASSERT_TRUE(a.Finished() && b.Finished());
  ForEachElement(design, [&](int facet, int own) {
    const int other = number(facet, own);
    EXPECT_EQ(a.Status(facet, own), b.Status(facet, other));
    EXPECT_NEAR(a.Measure(facet, own), b.Measure(facet, other), tolerance);
    EXPECT_NEAR(a.StandardError(facet, own), b.StandardError(facet, other), tolerance);
    EXPECT_NEAR(double{a.Fit(facet, own).InfitMeanSquare}, double{b.Fit(facet, other).InfitMeanSquare}, 3 * tolerance);
    EXPECT_NEAR(double{a.Fit(facet, own).OutfitMeanSquare}, double{b.Fit(facet, other).OutfitMeanSquare},
                5 * tolerance);
  });
}

constexpr double kRounding = 0.0005;

TEST(EstimationProperties, NothingIsLeftOverAtConvergence) {
  for (const auto& [what, design] : GeneratedDesigns()) {
    SCOPED_TRACE(what);
    const FinishedAnalysis run = design.Run();
    ASSERT_TRUE(run.Finished());
    ForEachElement(design, [&](int facet, int number) {
      if (!Measurable(run.Status(facet, number))) return;
      const double error = run.StandardError(facet, number);
      EXPECT_LT(std::fabs(double{run.Fit(facet, number).Displacement}) / (error * error), 0.001);  // score points
    });
    if (design.Models.ends_with("D") || design.Models.find(",R") == std::string::npos) continue;
    for (const ScaleNumber scale : run.A.Scales.ScaleOrder)
      for (int k = 0; k <= run.A.Scales.Scales[scale].ScaleTopCategory; ++k)
        EXPECT_NEAR(run.A.Scales.CategoryCount(scale, k), run.A.Scales.CategoryExpected(scale, k), 0.001);
  }
}

TEST(EstimationProperties, AnchoredAtItsOwnMeasuresAnAnalysisRepeatsItself) {
  for (const auto& [what, design] : GeneratedDesigns()) {
    SCOPED_TRACE(what);
    const FinishedAnalysis free = design.Run();
    Design anchored = design;
    for (std::string& type : anchored.FacetFields) type = ",A";
    ForEachElement(design, [&](int facet, int number) {
      if (Measurable(free.Status(facet, number)))
        anchored.Field(facet, number) = "," + NumberText(free.Measure(facet, number));
    });
    const FinishedAnalysis again = anchored.Run();
    ASSERT_TRUE(again.Finished());
    ExpectSameSteps(free, again, kRounding);
    ForEachElement(design, [&](int facet, int number) {
      EXPECT_NEAR(again.Measure(facet, number), free.Measure(facet, number), kRounding);
      EXPECT_NEAR(again.StandardError(facet, number), free.StandardError(facet, number), kRounding);
      EXPECT_NEAR(double{again.Fit(facet, number).Displacement}, 0, kRounding);
    });
  }
}

TEST(EstimationProperties, NeitherTheOrderOfTheDataNorTheNumbersOfElementsMatter) {
  for (const auto& generated : GeneratedDesigns()) {
    SCOPED_TRACE(generated.What);
    const Design& design = generated.Design;
    const FinishedAnalysis run = design.Run();
    Design shuffled = design;
    std::mt19937 random(7);
    for (std::size_t i = shuffled.Ratings.size(); i > 1; --i)
      std::swap(shuffled.Ratings[i - 1], shuffled.Ratings[random() % i]);
    ExpectSameResults(design, run, shuffled.Run(), kRounding);
    Design renumbered = design;
    const auto reversed = [&](int facet, int own) {
      return design.Counts[static_cast<std::size_t>(facet - 1)] + 1 - own;
    };
    for (Rating& rating : renumbered.Ratings)
      for (std::size_t f = 0; f < rating.Elements.size(); ++f)
        rating.Elements[f] = reversed(static_cast<int>(f) + 1, rating.Elements[f]);
    ExpectSameResults(design, run, renumbered.Run(), kRounding, reversed);
  }
}

TEST(EstimationProperties, TurningAFacetRoundMirrorsItsMeasures) {
  for (const auto& [what, design] : GeneratedDesigns()) {
    SCOPED_TRACE(what);
    const FinishedAnalysis run = design.Run();
    Design turned = design;
    turned.Settings += "Positive=2\n";  // and facet 1 no longer
    const FinishedAnalysis mirrored = turned.Run();
    ExpectSameSteps(run, mirrored, kRounding);
    ForEachElement(design, [&](int facet, int number) {
      const bool isTurned = facet <= 2;
      EXPECT_NEAR(run.Measure(facet, number), (isTurned ? -1 : 1) * mirrored.Measure(facet, number), kRounding);
      if (Measurable(run.Status(facet, number))) return;
      EXPECT_EQ(isTurned, run.Status(facet, number) != mirrored.Status(facet, number));
    });
  }
}

TEST(EstimationProperties, ItemsTurnedRoundMeasureAsIfTheirResponsesHadBeen) {
  for (const int top : {1, 2}) {
    Design plain = SimulatedDesign({40, 3, 6}, top, 11);
    plain.Settings += "Noncenter=3\n";
    plain.Models = "?,?,?,Scale";
    plain.Blocks = "Rating scale=Scale,R" + NumberText(top) + "\n*\n";
    Design turned = plain;
    turned.Models = "-?,-?,4-6,Scale\n?,?,?,Scale";
    for (Rating& rating : turned.Ratings)
      if (rating.Elements[2] > 3) rating.Response = top - rating.Response;
    const FinishedAnalysis a = plain.Run();
    const FinishedAnalysis b = turned.Run();
    ExpectSameSteps(a, b, kRounding);
    ForEachElement(plain, [&](int facet, int number) {
      const bool mirrored = facet == 3 && number > 3;
      EXPECT_NEAR(a.Measure(facet, number), (mirrored ? -1 : 1) * b.Measure(facet, number), kRounding);
      EXPECT_NEAR(a.StandardError(facet, number), b.StandardError(facet, number), kRounding);
    });
    // With their mean held, items on both sides cannot have the origin that their scores ask for.
    const std::string_view conflict =
        "Models= -?,-?,4-6,SCALE,1: - here, but not everywhere, turns the origin of facet 3 round, so it cannot be "
        "centered. Please use Noncenter=3";
    EXPECT_FALSE(b.Warns(conflict));
    EXPECT_TRUE(turned.Run({"Facets=3", "Noncenter=1", "Iterations=100"}).Warns(conflict));
  }
}

TEST(EstimationProperties, RestWithScoresThatAreNotMetIsTold) {
  // Responses without an item are met at difficulty 0, so the mean of the items is no free choice: they are easier.
  Design design({8, 2}, "?,?,D");
  for (int person = 1; person <= 8; ++person) {
    for (int repeated = 0; repeated < 4; ++repeated) {
      design.Ratings.push_back({{person, 1 + repeated % 2}, person % 4 != repeated});
      design.Ratings.push_back({{person, 0}, person % 4 == repeated});
    }
  }
  const auto told = [](const FinishedAnalysis& run) { return run.Reports("At rest, but not converged: a score"); };
  const FinishedAnalysis centered = design.Run();
  const FinishedAnalysis free = design.Run({"Facets=2", "Noncenter=1,2"});
  EXPECT_TRUE(told(centered));
  EXPECT_FALSE(told(free));
  // Each person meets 3 of 4 items and 1 of 4 without: the logits are ln 3 and -ln 3.
  EXPECT_NEAR(free.Measure(1, 1), -std::log(3.0), 0.001);
  EXPECT_NEAR(free.Measure(1, 1) - free.Measure(2, 1), std::log(3.0), 0.001);
}

TEST(EstimationProperties, DoubledWeightsLeaveMeasuresAndHalveTheErrorVariance) {
  for (const auto& [what, design] : GeneratedDesigns()) {
    SCOPED_TRACE(what);
    const FinishedAnalysis run = design.Run();
    Design byModel = design;
    byModel.Models += ",2";
    Design byLine = design;
    for (Rating& rating : byLine.Ratings) rating.Replication = 2;
    Design byElement = design;
    for (int number = 1; number <= design.Counts[1]; ++number) byElement.Field(2, number) = ",,,2";
    for (const Design* const doubled : {&byModel, &byLine, &byElement}) {
      const FinishedAnalysis twice = doubled->Run();
      ExpectSameSteps(run, twice, kRounding);
      ForEachElement(design, [&](int facet, int number) {
        EXPECT_NEAR(run.Measure(facet, number), twice.Measure(facet, number), 2 * kRounding);
        EXPECT_NEAR(run.StandardError(facet, number), twice.StandardError(facet, number) * std::sqrt(2.0), kRounding);
      });
    }
    // A datum of weight 0 tells nothing, a datum of weight 2 as much as the datum twice.
    Design repeated = design;
    Design weighted = design;
    for (std::size_t i = 0; i < design.Ratings.size(); i += 5) {
      repeated.Ratings.push_back(design.Ratings[i]);
      weighted.Ratings[i].Replication = 2;
      weighted.Ratings.push_back({design.Ratings[i].Elements, 1, 0});
    }
    ExpectSameResults(design, repeated.Run(), weighted.Run(), kRounding);
  }
}

TEST(EstimationProperties, UserUnitsChangeWhatIsWrittenAndNothingElse) {
  Design design = SimulatedDesign({10, 4}, 3, 4);
  const FinishedAnalysis logits = design.Run();
  Design inUnits = design;
  inUnits.Settings += "Umean=50,10,1\n";
  const FinishedAnalysis units = inUnits.Run();
  ForEachElement(design, [&](int facet, int number) {
    EXPECT_EQ(logits.Measure(facet, number), units.Measure(facet, number));
    EXPECT_EQ(logits.StandardError(facet, number), units.StandardError(facet, number));
    const std::string shown = FormatSingle(static_cast<float>(50 + 10 * logits.Measure(facet, number)), 6, 1);
    EXPECT_NE(units.Report.find(shown), std::string::npos) << shown;
  });
  // Anchors and thresholds come in in the units in which measures go out.
  design.FacetFields[1] = ",A";
  inUnits.FacetFields[1] = ",A";
  const std::string_view scale = "Rating scale=Scale,R3\n0,low\n1,one,";
  design.Models = inUnits.Models = "?,?,Scale";
  design.Blocks = std::string(scale) + "-.5,A\n2,two\n3,three,.9,A\n*\n";
  inUnits.Blocks = std::string(scale) + "-5,A\n2,two\n3,three,9,A\n*\n";
  for (int number = 1; number <= 4; ++number) {
    design.Field(2, number) = "," + NumberText(0.25 * number);
    inUnits.Field(2, number) = "," + NumberText(50 + 2.5 * number);
  }
  ExpectSameResults(design, design.Run(), inUnits.Run(), kRounding);
}

TEST(EstimationProperties, TheSameAnalysisTwiceIsTheSameToTheLastBit) {
  for (const auto& [what, design] : GeneratedDesigns()) {
    SCOPED_TRACE(what);
    const FinishedAnalysis a = design.Run({"Write=Y"});
    const FinishedAnalysis b = design.Run({"Write=Y"});
    ForEachElement(design,
                   [&](int facet, int number) { EXPECT_EQ(a.Measure(facet, number), b.Measure(facet, number)); });
    const auto tables = [](const std::string& report) { return report.substr(report.find("Table 2.")); };
    EXPECT_GT(tables(a.Report).size(), 1000U);
    EXPECT_EQ(tables(a.Report), tables(b.Report));
  }
}

TEST(EstimationProperties, CurveFittingAndNewtonRaphsonMeet) {
  for (const auto& [what, design] : GeneratedDesigns()) {
    SCOPED_TRACE(what);
    ExpectSameResults(design, design.Run(), design.Run({"Newton=0.5"}), kRounding);
  }
}

}  // namespace
}  // namespace tessaly
