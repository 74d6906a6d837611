#include "interaction/bias_step.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tessaly {
namespace {

/// A term of `possible` dichotomies at `measure`, whose expected score comes in portions of `grain`, as sums of singles
/// do that are large. Gives the steps that the estimation took, and where it ended.
struct Course {
  int Steps = 0;
  float Size = 0;
};

Course Estimate(BiasAim aim, double measure, double grain, const BiasStepRule& rule) {
  const auto expected = [&](float size) {
    const double e = static_cast<double>(aim.Possible) / (1 + std::exp(-(measure + static_cast<double>(size))));
    return grain > 0 ? std::round(e / grain) * grain : e;
  };
  const double p = 1 / (1 + std::exp(-measure));
  BiasBracket bracket;
  BiasStep step = FirstBiasStep(aim, expected(0), static_cast<float>(static_cast<double>(aim.Possible) * p * (1 - p)),
                                rule, bracket);
  Course course{1, step.Size};
  for (; !step.Settled && course.Steps < 1000; ++course.Steps) {
    step = NextBiasStep(aim, expected(course.Size), course.Size, rule, bracket);
    course.Size = step.Size;
  }
  return course;
}

TEST(BiasStep, MeetsTheObservedScoreInFewSteps) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> share(0.001, 0.999);
  for (int n = 0; n < 1000; ++n) {
    const auto possible = static_cast<float>(1 + random() % 5000);
    const auto observed = static_cast<float>(share(random)) * possible;
    const double measure = 8 * share(random) - 4;
    const Course course = Estimate({observed, possible}, measure, 0, {0.01F, 0.001F, 80, 1e-35F});
    const double aimed = std::log(double(observed) / double(possible - observed)) - measure;
    EXPECT_NEAR(double(course.Size), aimed, 0.003) << observed << " of " << possible << " at " << measure;
    EXPECT_LE(course.Steps, 12) << observed << " of " << possible << " at " << measure;
  }
}

TEST(BiasStep, SettlesAlsoWhereTheCriteriaCannotBeMet) {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> share(0.0, 1.0);
  for (int n = 0; n < 2000; ++n) {
    const float possible = std::exp2(static_cast<float>(random() % 40));
    const float observed = static_cast<float>(share(random)) * possible;
    const double grain = double(possible) * std::exp2(-static_cast<double>(random() % 24));
    const Course course = Estimate({observed, possible}, 20 * share(random) - 10, grain, {1e-12F, 1e-12F, 80, 1e-35F});
    EXPECT_LT(course.Steps, 150) << observed << " of " << possible << " in portions of " << grain;
    EXPECT_LE(std::fabs(course.Size), 80);
  }
  BiasBracket bracket;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(FirstBiasStep({1, 2}, nan, 1, {}, bracket).Settled);
  EXPECT_TRUE(NextBiasStep({1, 2}, nan, 0, {}, bracket).Settled);
}

}  // namespace
}  // namespace tessaly
