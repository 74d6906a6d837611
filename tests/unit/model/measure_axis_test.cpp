#include "model/measure_axis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tessaly {
namespace {

TEST(MeasureAxis, HoldsTheMeasuresInRoundSteps) {
  struct Case {
    float From, To;
    MeasureAxis Axis;
  };
  for (const Case& c : {
           Case{-1.2F, 1.4F, {-2, 2, 1, 4, 17}}, Case{1.4F, -1.2F, {-2, 2, 1, 4, 17}}, Case{3, 3, {2, 4, 1, 2, 34}},
           Case{-4.1F, 4.2F, {-6, 6, 2, 6, 11}},    // 10 units in steps of 2
           Case{-20, 12, {-20, 20, 10, 4, 17}},     // steps of 6 are 10
           Case{-55, 61, {-60, 80, 20, 7, 9}},      // 20 stays
           Case{-120, 130, {-120, 160, 40, 7, 9}},  // 36 becomes 40
           Case{0, 500, {0, 500, 100, 5, 13}},      // 84 becomes 100
       }) {
    const std::optional<MeasureAxis> axis = FitMeasureAxis(c.From, c.To, 68);
    ASSERT_TRUE(axis);
    EXPECT_EQ(axis->Low, c.Axis.Low) << c.From;
    EXPECT_EQ(axis->High, c.Axis.High) << c.From;
    EXPECT_EQ(axis->Step, c.Axis.Step) << c.From;
    EXPECT_EQ(axis->Ticks, c.Axis.Ticks) << c.From;
    EXPECT_EQ(axis->ColumnsPerTick, c.Axis.ColumnsPerTick) << c.From;
    EXPECT_EQ(axis->Column(static_cast<float>(axis->High)), axis->Columns());
    EXPECT_EQ(axis->MeasureAt(axis->ColumnsPerTick), static_cast<float>(axis->TickValue(1)));
  }
  EXPECT_TRUE(FitMeasureAxis(-1e15F, 1e15F, 68));
  for (const float absurd : {1e16F, std::numeric_limits<float>::infinity(), NAN}) {
    EXPECT_FALSE(FitMeasureAxis(absurd, 0, 68));
    EXPECT_FALSE(FitMeasureAxis(0, -absurd, 68));
  }
}

}  // namespace
}  // namespace tessaly
