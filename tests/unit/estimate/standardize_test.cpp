#include "estimate/standardize.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessaly {
namespace {

// Percentiles of chi-square from printed tables: the transformation must lead to the same percentiles of the normal.
TEST(Standardize, TurnsChiSquarePercentilesIntoNormalOnes) {
  struct Percentile {
    float Freedom, ChiSquare;
    double Normal;
  };
  for (const Percentile& p : {Percentile{10, 18.307F, 1.645}, Percentile{10, 3.940F, -1.645}, Percentile{10, 9.342F, 0},
                              Percentile{30, 43.773F, 1.645}, Percentile{30, 50.892F, 2.326},
                              Percentile{5, 15.086F, 2.326}, Percentile{100, 77.929F, -1.645}}) {
    const FitStatistic fit = Standardize(p.Freedom, double{2 * p.Freedom}, p.ChiSquare, true, 1e-30F);
    EXPECT_NEAR(double{fit.ZStd}, p.Normal, 0.02) << p.ChiSquare;
    EXPECT_FLOAT_EQ(fit.MeanSquare, p.ChiSquare / p.Freedom);
    EXPECT_FLOAT_EQ(fit.Freedom, p.Freedom);
    // Without the exact form the deviation's third is left out.
    const FitStatistic plain = Standardize(p.Freedom, double{2 * p.Freedom}, p.ChiSquare, false, 1e-30F);
    EXPECT_NEAR(double{fit.ZStd - plain.ZStd}, std::sqrt(2.0 / double{p.Freedom}) / 3, 1e-5);
  }
}

TEST(Standardize, CapsAndStandsInForWhatCannotBeKnown) {
  const FitStatistic large = Standardize(10, 20, 200, true, 1e-30F);
  EXPECT_EQ(large.MeanSquare, 9);
  EXPECT_EQ(large.ZStd, 9);
  // The deviate comes from the mean-square of 10, not from the cap of 9.
  const FitStatistic between = Standardize(10, 200, 100, true, 1e-30F);
  EXPECT_EQ(between.MeanSquare, 9);
  EXPECT_NEAR(double{between.ZStd}, (std::cbrt(10.0) - 1) * 3 / std::sqrt(2.0) + std::sqrt(2.0) / 3, 1e-5);
  EXPECT_EQ(Standardize(1000, 2000, 0, true, 1e-30F).ZStd, -9);
  for (const float n : {0.0F, -1.0F}) {
    const FitStatistic none = Standardize(n, 5, 5, true, 1e-30F);
    EXPECT_EQ(none.MeanSquare, 1);
    EXPECT_EQ(none.ZStd, 0);
  }
  // One observation may leave no variance: the mean-square is what it is.
  const FitStatistic single = Standardize(1, 0, 2.5F, true, 1e-30F);
  EXPECT_EQ(single.MeanSquare, 2.5F);
  EXPECT_EQ(single.ZStd, 0);
}

}  // namespace
}  // namespace tessaly
