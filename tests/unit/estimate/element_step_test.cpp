#include "estimate/element_step.h"
#include "estimate/step_length.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaly {
namespace {

struct Bed {
  ElementRecord Record;
  EstimationSums Sums;
  StepRule Rule{Phase::Jmle, 0, 1, 0.5F};
  tessaly::Settings Settings;
  bool Positive = true;
  float Measure = 0;

  Bed(double observed, double possible, double expected) {
    Record.ObservedScore = observed;
    Record.PossibleScore = possible;
    Record.SmallestWeight = 1;
    Sums.ExpectedScore = expected;
    Sums.Information = 4;
  }
  ElementStepResult Step() { return ElementStep(Record, Sums, Positive, Rule, Settings, Measure); }
};

TEST(ElementStep, NewtonRaphsonDividesByTheInformationButNotByLessThanOne) {
  Bed bed(9, 20, 7);
  bed.Rule.NewtonStep = 0.5F;
  ElementStepResult step = bed.Step();
  EXPECT_FLOAT_EQ(step.Residual, 2);
  EXPECT_FLOAT_EQ(step.Fraction, 0.1F);
  EXPECT_FLOAT_EQ(step.Change, 0.25F);
  bed.Positive = false;
  EXPECT_FLOAT_EQ(bed.Step().Change, -0.25F);
  bed.Sums.Information = 0.01F;
  bed.Rule.NewtonStep = 0.4F;
  EXPECT_FLOAT_EQ(bed.Step().Change, -0.8F);
  // 1.5 is shortened in four steps of a tenth.
  bed.Positive = true;
  bed.Rule.NewtonStep = 0.75F;
  EXPECT_FLOAT_EQ(bed.Step().Change, 0.98415F);
}

TEST(ElementStep, CurveFittingMovesAlongTheLogitOfTheScore) {
  const auto logit = [](double p) { return std::log(p / (1 - p)); };
  Bed bed(9, 20, 7);
  // A curve that moves 0.8 logits for a probe of half a logit: the move of half the gap is cut in that proportion.
  bed.Sums.ExpectedScoreProbe = 20 / (1 + std::exp(-(logit(0.35) - 0.8)));
  const double gap = logit(0.45) - logit(0.35);
  EXPECT_NEAR(double{bed.Step().Change}, gap * 0.5 * 0.5 / 0.8, 1e-6);
  // A flatter curve is not overstepped.
  bed.Sums.ExpectedScoreProbe = 20 / (1 + std::exp(-(logit(0.35) - 0.2)));
  bed.Rule.CurveDamping = 0.75F;
  EXPECT_NEAR(double{bed.Step().Change}, gap * 0.5 * 0.75, 1e-6);
  bed.Sums.ExpectedScoreProbe = bed.Sums.ExpectedScore;
  EXPECT_EQ(bed.Step().Change, 0);
  EXPECT_FLOAT_EQ(bed.Step().Residual, 2);
}

TEST(ElementStep, ExtremeScoresAreTakenInsideTheRangeLowerEndFirst) {
  struct Case {
    double Observed, Possible, Aim;
  };
  for (const Case& c : {Case{0, 20, 0.15}, Case{20, 20, 19.85}, Case{0.1, 20, 0.15}, Case{7, 20, 7}, Case{0, 0.2, 0.05},
                        Case{0.2, 0.2, 0.05}, Case{0, -20, 0.15}}) {
    Bed bed(c.Observed, c.Possible, 3);
    bed.Record.SmallestWeight = 0.5F;  // 0.3 times the smallest weight
    EXPECT_FLOAT_EQ(bed.Step().Residual, static_cast<float>(c.Aim - 3)) << c.Observed << " of " << c.Possible;
  }
  Bed nothing(0, 0, 3);
  const ElementStepResult none = nothing.Step();
  EXPECT_EQ(none.Change + none.Residual + none.Fraction, 0);
}

TEST(ElementStep, ProxPutsTheElementWhereItBalancesTheMeasuresItMet) {
  Bed bed(12, 16, 0);
  bed.Rule.Phase = Phase::Prox;
  const double met[] = {-1, 0.5, 2, 1.5};
  const double mean = 0.75;
  double variance = 0;
  bed.Sums.Information = 0;
  for (const double m : met) {
    bed.Sums.ExpectedScore += m;
    bed.Sums.Information += static_cast<float>(m * m);
    bed.Sums.ProxWeight += 1;
    variance += (m - mean) * (m - mean) / 4;
  }
  bed.Measure = 0.25F;
  const double prox = std::sqrt(1 + variance / 2.89) * std::log(3.0) - mean;
  EXPECT_NEAR(double{bed.Step().Change}, prox - 0.25, 1e-6);
  EXPECT_EQ(bed.Step().Residual, 0);
  bed.Positive = false;
  EXPECT_NEAR(double{bed.Step().Change}, -prox - 0.25, 1e-6);
  // Scores stay half a point off the ends; no limit is put on the change.
  bed.Positive = true;
  bed.Record.ObservedScore = 16;
  EXPECT_NEAR(double{bed.Step().Change}, std::sqrt(1 + variance / 2.89) * std::log(32.0) - mean - 0.25, 1e-5);
  // A starting value stands until JMLE, and so does an element that met nobody.
  bed.Record.AnchorValue = -2;
  EXPECT_EQ(bed.Step().Change, 0);
  EXPECT_EQ(bed.Measure, -2);
  bed.Record.AnchorValue = 0;
  bed.Sums.ProxWeight = 0;
  EXPECT_EQ(bed.Step().Change, 0);
  EXPECT_EQ(bed.Measure, 0);
}

TEST(StepLength, ShortensByTenthsAndEndsForWhateverItIsGiven) {
  EXPECT_FLOAT_EQ(ShortenedStep(1.5, 1), 0.98415F);
  EXPECT_FLOAT_EQ(ShortenedStep(-0.5, 0.1F), -0.5F * std::pow(0.9F, 16.0F));
  EXPECT_EQ(ShortenedStep(1, 1), 1);
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_GT(ShortenedStep(infinity, 1), 0.9F);
  EXPECT_LT(ShortenedStep(-1e300, 0.1F), -0.09F);
  EXPECT_EQ(ShortenedStep(infinity - infinity, 1), 0);
}

}  // namespace
}  // namespace tessaly
