#include "support/bytes.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

constexpr TextEncoding kAlways = {'Y', '#'};
constexpr TextEncoding kNever = {'N', '#'};

TEST(Bytes, TrimmingKnowsBlanksAlone) {
  EXPECT_EQ(TrimBlanks("  a\t b  "), "a\t b");
  EXPECT_EQ(TrimBlanks("   "), "");
  EXPECT_EQ(TrimBlanks("\t"), "\t");
  EXPECT_EQ(TrimLeft("  a "), "a ");
  EXPECT_EQ(TrimLeft("  "), "");
  EXPECT_EQ(TrimRight(" a  "), " a");
  EXPECT_EQ(TrimRight("  "), "");
  EXPECT_EQ(TrimQuotes(" \"' it's \" "), "it's");
  EXPECT_EQ(TrimQuotes("\"\""), "");
}

TEST(Bytes, ListsAndColumns) {
  EXPECT_EQ(SplitAt("", ',').size(), 1u);
  EXPECT_EQ(SplitAt(",b, c,", ','), (std::vector<std::string_view>{"", "b", " c", ""}));
  EXPECT_EQ(Joined({"a", "", "b"}, ", "), "a, , b");
  EXPECT_EQ(RightJustified("abc", 5), "  abc");
  EXPECT_EQ(RightJustified("abc", 2), "abc");
  EXPECT_EQ(CutOrPad("abc", 5), "abc  ");
  EXPECT_EQ(CutOrPad("abc", 2), "ab");
  EXPECT_EQ(CutOrPad("abc", -1), "");
  EXPECT_EQ(UpperAscii("az\xE4Z[`{"), "AZ\xE4Z[`{");
  EXPECT_EQ(LowerAscii("AZ\xC4z[`{"), "az\xC4z[`{");
}

TEST(Bytes, Utf8IsToldByItsSequences) {
  EXPECT_FALSE(IsUtf8("plain")) << "pure ASCII never is";
  EXPECT_FALSE(IsUtf8("plain", kAlways));
  EXPECT_TRUE(IsUtf8("\xC3\xA9"));
  EXPECT_FALSE(IsUtf8("\xC3\xA9", kNever));
  EXPECT_TRUE(IsUtf8("a\xE6\x97\xA5 \xF0\x9F\x98\x80 b"));
  EXPECT_FALSE(IsUtf8("\xC4pfel")) << "196 needs a continuation byte";
  EXPECT_TRUE(IsUtf8("\xC4pfel", kAlways));
  EXPECT_EQ(DisplayLength("\xC4pfel"), 5);
  for (const char* cutOff : {"a\xC3", "a\xE6\x97", "a\xF0\x9F\x98"}) EXPECT_FALSE(IsUtf8(cutOff));
  for (const char* wrongLead : {"\xC0\x80", "\xC1\xBF", "\xF5\x80\x80\x80", "\xFF", "\x80"})
    EXPECT_FALSE(IsUtf8(wrongLead));
}

TEST(Bytes, DisplayLengthAndPaddingMeasureCharacters) {
  const std::string wide = "\xE6\x97\xA5";
  EXPECT_EQ(DisplayLength(wide), 2);
  EXPECT_EQ(DisplayLength(wide + wide + wide), 5) << "5.4";
  EXPECT_EQ(DisplayLength("\xC3\xA9\xF0\x9F\x98\x80"), 2);
  EXPECT_EQ(PadToWidth(wide, 1), " ") << "1.8 less 0.5 is above 1";
  EXPECT_EQ(PadToWidth(wide, 2), wide);
  EXPECT_EQ(PadToWidth(wide, 4), wide + "  ");
  EXPECT_EQ(PadToWidth("\xC3\xA9t\xC3\xA9", 4), "\xC3\xA9t\xC3\xA9 ");
  EXPECT_EQ(PadToWidth("\xC3\xA9t\xC3\xA9", 2), "\xC3\xA9t");
  EXPECT_EQ(PadToWidth("\xE2\x82\xAC"
                       "5",
                       2),
            "\xE2\x82\xAC"
            "5")
      << "226 is no wide lead when padding";
  EXPECT_EQ(PadToWidth("\xC4pfel", 3), "\xC4pf");
  EXPECT_EQ(PadToWidth("\xC4", 3, kAlways), "\xC4   ") << "the lead takes a blank along";
  EXPECT_EQ(PadToWidth("\xF0", 9, kAlways), "\xF0" + std::string(11, ' '));
  EXPECT_EQ(PadToWidth(wide, 0), "");
}

TEST(Bytes, SubstitutionGivesOneByteForACharacter) {
  EXPECT_EQ(SubstituteUtf8("ab\xC3\xA9"
                           "c"),
            "ab.c");
  EXPECT_EQ(SubstituteUtf8("ab\xC3\xA9"
                           "c",
                           kAlways),
            "ab#c");
  EXPECT_EQ(SubstituteUtf8("\xC3\xA9"
                           "b\xE6\x97"),
            "\xC3\xA9"
            "b\xE6\x97")
      << "cut off: no UTF-8, unchanged";
  EXPECT_EQ(SubstituteUtf8("\xC3\xA9"
                           "b\xE6\x97",
                           kAlways),
            "#b")
      << "stops before the cut sequence";
}

TEST(Bytes, QuotedLinesAreCut) {
  EXPECT_EQ(QuotedLine(std::string(1000, 'a')), std::string(1000, 'a'));
  EXPECT_EQ(QuotedLine(std::string(1001, 'a')), std::string(1000, 'a') + " ...");
}

}  // namespace
}  // namespace tessaly
