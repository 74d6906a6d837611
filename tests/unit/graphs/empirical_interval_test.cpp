#include "graphs/empirical_interval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace tessaly {
namespace {

TEST(EmpiricalInterval, PlacesOfTheControl) {
  for (const float extent : {1.0F, 5.4F, 733.0F}) {
    const EmpiricalRange range{-1, extent - 1};
    for (const std::int32_t place : {-9, 0, 1}) EXPECT_EQ(IntervalAtPosition(place, range).Width, std::ceil(extent));
    for (const std::int32_t place : {200, 999}) EXPECT_EQ(IntervalAtPosition(place, range).Width, 0.01F);
    EXPECT_EQ(IntervalAtPosition(-9, range).Position, 1);
    EXPECT_EQ(IntervalAtPosition(999, range).Position, 200);
    for (std::int32_t place = 2; place < 200; ++place) {
      const EmpiricalInterval interval = IntervalAtPosition(place, range);
      const double exact = 0.015 * std::pow(double{extent} / 0.015, (200 - place) / 199.0);
      EXPECT_NEAR(double{interval.Width}, exact - 0.005, 0.00501 + 1e-6 * exact) << place;
      if (interval.Width > 0.5F) {
        EXPECT_LE(std::abs(interval.Position - place), 1);
      }
    }
  }
}

TEST(EmpiricalInterval, WidthsAreHeld) {
  const float inf = std::numeric_limits<float>::infinity();
  const auto width = [](float wanted) { return IntervalOfWidth(wanted, {-2, 3.2F}).Width; };
  EXPECT_EQ(width(0.125F), 0.13F);
  EXPECT_EQ(width(0.124F), 0.12F);
  EXPECT_EQ(width(5.2F), 5.2F);
  for (const float low : {0.0F, -1.0F, 1e-30F, std::nanf(""), -inf}) EXPECT_EQ(width(low), 0.01F);
  for (const float high : {5.3F, 1e30F, inf}) EXPECT_EQ(width(high), 6);
  // Ranges below the least width, of just the narrow end, and too long for singles.
  EXPECT_EQ(IntervalAtPosition(100, {0, 0.005F}).Width, 1);
  for (const EmpiricalRange& odd : {EmpiricalRange{0, 0.015F}, {3, 3}, {-3e38F, 3e38F}, {-inf, inf}}) {
    const EmpiricalInterval interval = IntervalAtPosition(100, odd);
    EXPECT_TRUE(interval.Width >= 0.01F && interval.Position >= 1 && interval.Position <= 200);
  }
}

TEST(EmpiricalInterval, FineSteps) {
  struct Case {
    float Width, Up, Down;
  };
  for (const Case& c : {Case{1, 1.1F, 0.9F}, Case{1.1F, 1.2F, 1}, Case{0.99F, 1, 0.98F}, Case{0.05F, 0.06F, 0.04F},
                        Case{0.1F, 0.11F, 0.09F}, Case{12.34F, 13, 11}, Case{0.01F, 0.02F, 0.001F}}) {
    EXPECT_FLOAT_EQ(StepUp(c.Width), c.Up);
    EXPECT_FLOAT_EQ(StepDown(c.Width), c.Down);
  }
  for (int hundredths = 1; hundredths < 30000; hundredths += 7) {
    const float width = static_cast<float>(hundredths) / 100;
    EXPECT_GT(StepUp(width), width);
    EXPECT_LT(StepDown(width), width);
  }
  for (const float hostile : {0.0F, -5.0F, std::nanf(""), std::numeric_limits<float>::infinity(), 3e38F})
    EXPECT_TRUE(StepUp(hostile) > 0 && StepDown(hostile) > 0);
}

TEST(BinEdges, LieOnMultiplesOfTheWidth) {
  const EmpiricalRange range{-2.3F, 3.1F};
  EXPECT_EQ(BinEdges(1, range).Edge(), -5.5F);
  EXPECT_EQ(BinEdges(0.5F, range).Edge(), -5);
  EXPECT_EQ(BinEdges(6, range).Edge(), 3.1F);
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    const float extent = std::uniform_real_distribution<float>(0.5F, 50)(random);
    const float low = std::uniform_real_distribution<float>(-30, 10)(random);
    const float width = static_cast<float>(1 + random() % 700) / 100;
    BinEdges slow(width, {low, low + extent});
    BinEdges fast = slow;
    for (float measure = low; measure < low + extent;
         measure += extent * static_cast<float>(1 + random() % 100) / 300) {
      while (measure > slow.Edge()) slow.Next();
      fast.Reach(measure);
      ASSERT_EQ(fast.Edge(), slow.Edge());
    }
  }
  BinEdges far(0.01F, {-1, 1e30F});
  for (const float measure : {-1.0F, 1e7F, 1e9F, 1e30F}) {
    far.Reach(measure);
    EXPECT_GE(far.Edge(), measure);
  }
}

}  // namespace
}  // namespace tessaly
