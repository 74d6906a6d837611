#include "reports/box_line.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

std::string Drawn(std::string_view ruleTemplate, RuleKind kind, bool ticks = false) {
  return ToTextBox(BoxLine(ruleTemplate, kind, ticks));
}

TEST(BoxLine, JoinsWhatStandsBesideEachBoundary) {
  constexpr std::string_view kRule = "x--x-- x xx-(Mean)x-x";
  using namespace box;
  const auto expected = [](char right, char left, char both, char alone) {
    return std::string{right, kHorizontal, kHorizontal, both,  kHorizontal, kHorizontal,
                       ' ',   alone,       ' ',         right, both,        kHorizontal} +
           "(Mean)" + std::string{right, kHorizontal, left};
  };
  EXPECT_EQ(BoxLine(kRule, RuleKind::Top), expected(kTopLeft, kTopRight, kTopTee, kHorizontal));
  EXPECT_EQ(BoxLine(kRule, RuleKind::Middle), expected(kLeftTee, kRightTee, kCross, kVertical));
  EXPECT_EQ(BoxLine(kRule, RuleKind::Bottom), expected(kBottomLeft, kBottomRight, kBottomTee, kHorizontal));
  // The last boundary of a rule closes it; a stretch beside an end counts as joined.
  EXPECT_EQ(BoxLine("x-x", RuleKind::Top), (std::string{kTopLeft, kHorizontal, kTopRight}));
  EXPECT_EQ(BoxLine("-x", RuleKind::Middle), (std::string{kHorizontal, kRightTee}));
  EXPECT_EQ(BoxLine("x", RuleKind::Bottom), std::string{kHorizontal});
  EXPECT_EQ(BoxLine("", RuleKind::Top), "");
}

TEST(BoxLine, ConvertsToEachFormWithoutMovingAColumn) {
  EXPECT_EQ(Drawn("x-x-x", RuleKind::Top), "+---+");
  EXPECT_EQ(Drawn("x-x-x", RuleKind::Middle), "|-+-|");
  EXPECT_EQ(Drawn("x-x-x", RuleKind::Bottom), "+---+");
  EXPECT_EQ(Drawn("x-x-x", RuleKind::Top, true), "+-+-+");
  std::string all;
  for (const int code : {14, 15, 16, 20, 21, 22, 23, 24, 25, 28, 29, 17, 18, 19}) all += static_cast<char>(code);
  EXPECT_EQ(ToTextBox(all), "-||+|+-++-+***");
  const unsigned char page437[] = {196, 179, 195, 197, 180, 218, 194, 191, 192, 193, 217, 216, 181, 198};
  EXPECT_EQ(ToDrawingBox(all), std::string(std::begin(page437), std::end(page437)));
  EXPECT_EQ(BlankBox(all), std::string(14, ' '));
  EXPECT_EQ(ToTextBox("a\tb\r\x1B"), "a\tb\r\x1B");
  EXPECT_EQ(WithVerticals("|a|"),
            "\x0F"
            "a\x0F");
}

TEST(BoxLine, WebpageLinesKeepTheirColumns) {
  EXPECT_EQ(ToWebpage(""), "<br>");
  EXPECT_EQ(ToWebpage("   "), "<br>");
  EXPECT_EQ(ToWebpage("a b  "), "a b<br>");
  EXPECT_EQ(ToWebpage("  a   b"), "&nbsp; a &nbsp; b<br>");
  EXPECT_EQ(ToWebpage(std::string{box::kTopLeft, box::kDoubleLeftTee} + " <1>"), "&#9484;&#9566; <1><br>");
}

}  // namespace
}  // namespace tessaly
