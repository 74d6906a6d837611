#include "support/exponential.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tessaly {
namespace {

// The long form of the library has 11 bits more.
TEST(Exponential, IsWithin52HundredthsOfAUnitInTheLastPlace) {
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> anywhere(-690, 690);
  std::uniform_real_distribution<double> nearZero(-0.01, 0.01);
  for (int i = 0; i < 400000; ++i) {
    const double x = i % 4 == 0 ? nearZero(random) : anywhere(random);
    const long double expected = std::exp(static_cast<long double>(x));
    const long double unit = std::ldexp(1.0L, std::ilogb(expected) - 52);
    ASSERT_LE(std::fabs(static_cast<long double>(Exponential(x)) - expected), 0.52L * unit) << x;
  }
  for (float x = -103; x < 88; x += 0.00037F) {
    ASSERT_EQ(ExponentialSingle(x), static_cast<float>(std::exp(static_cast<long double>(x)))) << x;
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
