#include "graphs/graph_axes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <vector>

#include "graphs/user_unit.h"

namespace tessaly {
namespace {

TEST(GraphAxes, MeasuresAreShownInRoundSteps) {
  const float inf = std::numeric_limits<float>::infinity();
  struct Case {
    CurveRange Curves;
    EmpiricalRange Data;
    double Unit;
    std::vector<float> Shown;
    std::vector<std::int32_t> Full;
  };
  // Shown: low, high, divisions. Full: low, high, steps of the grid.
  for (const Case& c : std::vector<Case>{
           {{101, 125}, {101, 125}, 1, {98, 128, 10}, {90, 130, 200}},  // 24 becomes 30
           {{101, 128}, {101, 128}, 1, {94, 134, 10}, {90, 140, 200}},  // 27 becomes 40, a half to even
           {{100.2F, 111.9F}, {101, 102}, 1, {100, 112, 12}, {96, 114, 198}},
           {{5, -3}, {0, 1}, 1, {-5, 5, 10}, {-9, 9, 198}},         // turned round, symmetric
           {{-2.4F, 2}, {-3, 4.6F}, 1, {-5, 5, 10}, {-9, 9, 198}},  // the data count as well
           {{0, 0}, {0, 1}, 1, {0, 1, 16}, {-2, 3, 200}},           // nothing to draw
           {{0, 0}, {0, 1}, 0.2, {0, 1, 16}, {-1, 2, 198}},
           {{-12, 22}, {0, 1}, 1, {-25, 25, 10}, {-30, 30, 198}},
           {{400, 620}, {400, 620}, 1, {400, 620, 10}, {360, 640, 196}},  // steps: 38 becomes 40
           {{400, 820}, {400, 820}, 1, {400, 820, 10}, {300, 900, 198}},  // 71 becomes 100
           {{400, 500}, {400, 500}, 5, {400, 500, 10}, {380, 520, 196}},  // 20 stays
       }) {
    const MeasureGrid grid = FitXAxis(c.Curves, c.Data, c.Unit);
    const XAxisSettings& x = grid.Axis;
    EXPECT_EQ((std::vector{x.ShownMin, x.ShownMax, x.Divisions}), c.Shown);
    EXPECT_EQ((std::vector{x.FullMin, x.FullMax, grid.Steps}), c.Full);
  }

  std::mt19937 random(8);
  std::uniform_real_distribution<double> power(-40, 38);
  const auto any = [&] {
    const auto value = static_cast<float>(std::pow(10, power(random)));
    const float choices[] = {std::nanf(""), inf, -inf, -value, value, value * 1e-20F, -value * 1e-20F};
    return choices[random() % std::size(choices)];
  };
  for (int i = 0; i < 20000; ++i) {
    const CurveRange curves{any(), any()};
    const EmpiricalRange data{any(), any()};
    const MeasureGrid grid = FitXAxis(curves, data, UserUnit(any()));
    const XAxisSettings& x = grid.Axis;
    ASSERT_TRUE(grid.Rows() >= 100 && grid.Rows() <= kMostGridRows);
    ASSERT_LT(x.ShownMin, x.ShownMax);
    ASSERT_TRUE(static_cast<float>(x.FullMin) <= x.ShownMin && static_cast<float>(x.FullMax) >= x.ShownMax);
    ASSERT_TRUE(x.Divisions >= 1 && x.Divisions <= 20);
    ASSERT_EQ(grid.MeasureOf(grid.Rows()), x.FullMax);
  }
}

TEST(GraphAxes, ScoresAndInformation) {
  // Low, high, divisions, ends of the controls.
  const auto axis = [](GraphKind kind, int bottom, int top, float largest) {
    const YAxisSettings y = FitYAxis(kind, {{}, {}, top, bottom, {}, {}}, largest);
    return std::vector{y.FullMin, y.FullMax, y.Divisions, y.SliderLow, y.SliderMax};
  };
  using Five = std::vector<std::int32_t>;
  EXPECT_EQ(axis(GraphKind::CategoryProbability, 1, 4, 1), (Five{0, 1, 10, 0, 10}));
  EXPECT_EQ(axis(GraphKind::ExpectedScore, 0, 1, 1), (Five{0, 1, 4, 0, 10}));
  EXPECT_EQ(axis(GraphKind::ExpectedScore, 1, 3, 1), (Five{1, 4, 12, 3, 12}));
  EXPECT_EQ(axis(GraphKind::ExpectedScore, 1, 4, 1), (Five{1, 5, 4, 2, 10})) << "2.5 to even";
  EXPECT_EQ(axis(GraphKind::ExpectedScore, 0, 21, 1), (Five{0, 21, 21, 0, 21}));
  EXPECT_EQ(axis(GraphKind::ItemInformation, 0, 4, 2.1F), (Five{0, 3, 12, 0, 9}));
  EXPECT_EQ(axis(GraphKind::CategoryInformation, 0, 4, 3.5F), (Five{0, 4, 4, 0, 8}));
  constexpr int kFarthest = 900000000;
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_EQ(axis(GraphKind::ItemInformation, 0, 4, inf), (Five{0, kFarthest, kFarthest, 0, kFarthest}));
  EXPECT_EQ(axis(GraphKind::ItemInformation, 0, 4, -inf), (Five{0, 1, 4, 0, 10}));
}

}  // namespace
}  // namespace tessaly
