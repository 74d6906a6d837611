#include "output/spec_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "support/expression.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

TEST(SpecText, WhatIsReadBackIsPrintedAlike) {
  std::mt19937 random(1);
  int tried = 0;
  int missed = 0;
  const auto compare = [&](float written, float read) {
    ++tried;
    missed += FormatSingle(written, 40, 6) != FormatSingle(read, 40, 6);
    // Some values are out of reach of (user value - mean) / scale in single precision.
    const float ulp = std::nextafter(std::fabs(written), 1e9F) - std::fabs(written);
    ASSERT_LE(std::fabs(written - read), std::max(ulp, 1e-6F));
  };
  for (const float scale : {1.0F, 10.0F, -0.7F, 100.0F, 1e-3F}) {
    for (const float mean : {0.0F, 500.0F, -0.1F}) {
      Settings settings;
      settings.Umean = mean;
      settings.Uscale = scale;
      settings.Udecimals = 6;
      const int missedBefore = missed;
      for (int i = 0; i < 2000; ++i) {
        const float logit = 12.0F * static_cast<float>(std::ldexp(double(random()), -31)) - 12.0F;
        const float read = (EvaluateExpression(SpecMeasure(logit, settings)) - mean) / scale;
        compare(settings.UserMeasure(logit), settings.UserMeasure(read));
        compare(scale * logit, scale * (EvaluateExpression(SpecThreshold(logit, settings)) / scale));
      }
      EXPECT_TRUE(scale == -0.7F || missed == missedBefore) << scale << " " << mean;
      // At the very limit rounding must not lead beyond.
      for (const float limit : {80.0F, -80.0F}) {
        const float read = (EvaluateExpression(SpecMeasure(limit, settings)) - mean) / scale;
        EXPECT_LE(std::abs(read), 80) << scale << " " << mean;
      }
    }
  }
  EXPECT_LT(missed, tried / 2000);
  for (const float value : {0.0F, 1e-7F, 0.1F, 1.0F / 3, -2.5F, 16777216.0F, 123456789.0F, 3.4e38F})
    EXPECT_NEAR(double{EvaluateExpression(SpecNumber(value))}, double{value}, 2e-7 * std::abs(double{value})) << value;
  for (const float value : {3.2552084e-4F, 2e-11F, -7.123456e-20F})
    EXPECT_EQ(EvaluateExpression(SpecNumber(value)), value);
  EXPECT_EQ(SpecMeasure(-0.25F, {}), "-.25");
  EXPECT_EQ(SpecMeasure(0.001F, {}), "0.001");
}

TEST(SpecText, LinesEndWhereTheirValuesDo) {
  EXPECT_EQ(SpecLine("1=label,2 , "), "1=label,2");
  EXPECT_EQ(SpecLine("1=label,,"), "1=label,");
  EXPECT_EQ(SpecLine("?,?,RS0,1,", "R5"), "?,?,RS0,1 ; R5");
  EXPECT_EQ(SpecLine("?,?,RS0", ""), "?,?,RS0");
  // A last value would lose its quote marks.
  EXPECT_EQ(SpecLine("1=\"Ann\",", "Null element"), "1=\"Ann\", ; Null element");
  EXPECT_EQ(SpecLine("1=\"Ann\",0.5"), "1=\"Ann\",0.5");
  EXPECT_EQ(SpecLine("2=l'un"), "2=l'un");
}

}  // namespace
}  // namespace tessaly
