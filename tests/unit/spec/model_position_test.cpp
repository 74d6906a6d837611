#include "spec/model_position.h"

#include <gtest/gtest.h>

#include "spec/scale_code.h"

namespace tessaly {
namespace {

TEST(ModelPosition, Texts) {
  struct Case {
    const char* Written;
    const char* Text;
    std::int32_t Low;
    std::int32_t High;
    bool HasHash = false;
    bool Negative = false;
    bool Bias = false;
  };
  const Case cases[] = {
      {"?", "?", -1, -1},
      {" $ ", "$", -1, -1},
      {"?$", "?", -1, -1},
      {"", "", -1, -1},
      {"b", "", -1, -1},
      {"-", "", -1, -1},
      {"-B", "", -1, -1},
      {"word", "", -1, -1},
      {"x", "X", -2, -2},
      {"-bX", "X", -2, -2},
      {"#", "#", -1, -1, true},
      {"#3", "#3", 3, 3, true},
      {"#5-3b", "#5-3B", 3, 5, true, false, true},
      {"-?", "-?", -1, -1, false, true},
      {"?B", "?B", -1, -1, false, false, true},
      {"B3", "3B", 3, 3, false, false, true},
      {"007", "7", 7, 7},
      {"1-5", "1-5", 1, 5},
      {"5_1", "5-1", 1, 5},
      {"2 - 4", "2-4", 2, 4},
      {"-5-1", "-5-1", 1, 5, false, true},
      {"_3", "-3", 3, 3, false, true},
      {"3-", "3", 3, 3},
      {"1-2-9", "1-2", 1, 2},
      {"2147483646", "2147483646", 2147483646, 2147483646},
  };
  for (const Case& c : cases) {
    const std::optional<ModelPosition> position = ParseModelPosition(c.Written);
    ASSERT_TRUE(position) << c.Written;
    EXPECT_EQ(position->Text, c.Text) << c.Written;
    EXPECT_EQ(position->Low, c.Low) << c.Written;
    EXPECT_EQ(position->High, c.High) << c.Written;
    EXPECT_EQ(position->HasHash, c.HasHash) << c.Written;
    EXPECT_EQ(position->Negative, c.Negative) << c.Written;
    EXPECT_EQ(position->Bias, c.Bias) << c.Written;
  }
  for (const char* text : {"2147483647", "1-99999999999999999999", "#99999999999"})
    EXPECT_FALSE(ParseModelPosition(text)) << text;
}

TEST(ScaleCode, TypesAndTops) {
  struct Case {
    const char* Code;
    ModelType Type;
    int Top;
    int Cut;
    bool Keep;
  };
  const Case cases[] = {
      {"R", ModelType::RatingScale, 9, 0, false},     {"R5K", ModelType::RatingScale, 5, 0, true},
      {"RK 5", ModelType::RatingScale, 5, 0, true},   {"R 7 ", ModelType::RatingScale, 7, 0, false},
      {"R0", ModelType::RatingScale, 9, 0, false},    {"R255", ModelType::RatingScale, 255, 0, false},
      {"R0007", ModelType::RatingScale, 7, 0, false}, {"B3", ModelType::Binomial, 3, 0, false},
      {"D", ModelType::Binomial, 1, 0, false},        {"D3", ModelType::Binomial, 1, 3, false},
      {"P", ModelType::Poisson, 255, 0, false},       {"M", ModelType::Missing, 255, 0, false},
  };
  for (const Case& c : cases) {
    const std::optional<ScaleCode> scale = ParseScaleCode(c.Code);
    ASSERT_TRUE(scale) << c.Code;
    EXPECT_EQ(scale->ModelType, c.Type) << c.Code;
    EXPECT_EQ(scale->Top, c.Top) << c.Code;
    EXPECT_EQ(scale->DichotomyCut, c.Cut) << c.Code;
    EXPECT_EQ(scale->Keep, c.Keep) << c.Code;
  }
  for (const char* code : {"", "B", "B0", "R256", "R2.5", "D1E99", "E5", "5", "r", "RATING", "MARK", "R5X"})
    EXPECT_FALSE(ParseScaleCode(code)) << code;
}

}  // namespace
}  // namespace tessaly
