#include "support/exponential.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tessaly {
namespace {

TEST(Exponential, IsWithinAUnitInTheLastPlace) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> anywhere(-690, 690);
  std::uniform_real_distribution<double> nearZero(-0.01, 0.01);
  for (int i = 0; i < 400000; ++i) {
    const double x = i % 4 == 0 ? nearZero(random) : anywhere(random);
    const double expected = static_cast<double>(std::exp(static_cast<long double>(x)));
    ASSERT_LE(std::fabs(Exponential(x) - expected), std::nextafter(expected, HUGE_VAL) - expected) << x;
  }
  EXPECT_EQ(Exponential(0), 1);
  EXPECT_EQ(Exponential(-0.0), 1);
}

TEST(Exponential, SmallAndForeignArgumentsAreHarmless) {
  const float infinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(ExponentialSingle(-infinity), 0);
  EXPECT_EQ(ExponentialSingle(-1e30F), 0);
  EXPECT_EQ(ExponentialSingle(-110), 0) << "below the smallest single";
  EXPECT_GT(ExponentialSingle(-103), 0) << "a single without its full precision";
  EXPECT_TRUE(std::isnan(Exponential(std::numeric_limits<double>::quiet_NaN())));
  EXPECT_FLOAT_EQ(ExponentialSingle(83), std::exp(83.0F));
}

}  // namespace
}  // namespace tessaly
