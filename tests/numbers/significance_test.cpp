// Probabilities against published tables: Abramowitz & Stegun 26.1 (normal), 26.8 (chi-square), 26.10 (Student).
#include "estimate/significance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaly {
namespace {

TEST(Significance, NormalTail) {
  EXPECT_NEAR(NormalTail(0), 0.5, 3e-7);
  EXPECT_NEAR(NormalTail(1), 0.1586552539, 3e-7);
  EXPECT_NEAR(NormalTail(1.644854), 0.05, 3e-7);
  EXPECT_NEAR(NormalTail(2.326348), 0.01, 3e-7);
  EXPECT_NEAR(NormalTail(-1.959964), 0.975, 3e-7);
  EXPECT_EQ(NormalTail(15), NormalTail(1e300));
}

TEST(Significance, NormalTwoSided) {
  const struct {
    double Z, Probability;
  } table[] = {{0, 1},          {.1, .9203443},   {.5, .6170751},  {1, .3173105},   {1.644854, .10}, {1.959964, .05},
               {2.575829, .01}, {3.290527, .001}, {4, 6.33425e-5}, {5, 5.73303e-7}, {40, 0}};
  for (const auto& row : table) {
    EXPECT_NEAR(NormalTwoSided(row.Z), row.Probability, 2e-7) << row.Z;
    EXPECT_EQ(NormalTwoSided(-row.Z), NormalTwoSided(row.Z));
  }
}

TEST(Significance, ChiSquare) {
  const struct {
    double Chi, Freedom, Probability;
  } table[] = {{3.84146, 1, 0.05},  {6.63490, 1, 0.01},   {5.99147, 2, 0.05},   {9.21034, 2, 0.01},
               {0.71072, 4, 0.95},  {18.3070, 10, 0.05},  {23.2093, 10, 0.01},  {4.86518, 10, 0.90},
               {43.7729, 30, 0.05}, {124.342, 100, 0.05}, {77.9295, 100, 0.95}, {135.807, 100, 0.01}};
  // The approximation is good to the second decimal, which is what reports show.
  for (const auto& row : table)
    EXPECT_NEAR(double(ChiSquareProbability(row.Chi, row.Freedom)), row.Probability, 0.002) << row.Chi;
  EXPECT_EQ(ChiSquareProbability(0, 3), 1);
  EXPECT_EQ(ChiSquareProbability(-2, 3), 1);
  EXPECT_EQ(ChiSquareProbability(5, 0), 1);
  EXPECT_LT(ChiSquareProbability(1e7, 20), 1e-30F);
  // No step at its centre, where the formula is 0 / 0.
  for (const double apart : {1e-12, 1e-9, 1e-7, 1e-5})
    EXPECT_NEAR(double(ChiSquareProbability(20 * (1 + apart), 21)), double(ChiSquareProbability(20, 21)), 1e-4)
        << apart;
}

TEST(Significance, Student) {
  const struct {
    double T;
    std::int64_t Freedom;
    double Probability;
  } table[] = {{12.7062, 1, 0.05},   {63.6567, 1, 0.01},      {4.30265, 2, 0.05},  {3.18245, 3, 0.05},
               {2.77645, 4, 0.05},   {2.22814, 10, 0.05},     {3.16927, 10, 0.01}, {1.67065, 60, 0.10},
               {2.61742, 120, 0.01}, {1.95996, 1000000, 0.05}};
  for (const auto& row : table) {
    EXPECT_NEAR(double(StudentProbability(row.T, row.Freedom)), row.Probability, 2e-6) << row.T;
    EXPECT_EQ(StudentProbability(-row.T, row.Freedom), StudentProbability(row.T, row.Freedom));
  }
  EXPECT_EQ(StudentProbability(0, 7), 1);
  EXPECT_EQ(StudentProbability(2, 0), 0);
  EXPECT_NEAR(double(StudentProbability(std::numeric_limits<double>::infinity(), 5)), 0, 1e-9);
}

TEST(Significance, WelchOfCountsBeyondDoublePrecisionHasNoFreedom) {
  const WelchResult known = WelchTest(2, 10, 10, 1, 1);
  EXPECT_EQ(known.Freedom, 18) << "equal errors and counts: n1 + n2 - 2";
  const WelchResult beyond = WelchTest(2, 1e200, 1e200, 1e100, 1e100);
  EXPECT_EQ(beyond.Freedom, 0);
  EXPECT_EQ(beyond.Probability, WelchTest(2, 1, 1, 1, 1).Probability);
}

}  // namespace
}  // namespace tessaly
