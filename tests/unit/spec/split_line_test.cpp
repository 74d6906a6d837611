#include "spec/split_line.h"

#include <gtest/gtest.h>

#include "spec/clean_line.h"

namespace tessaly {
namespace {

using Values = std::vector<std::string>;

TEST(SplitLine, KeywordAndValues) {
  struct Case {
    const char* Line;
    const char* Keyword;
    Values Expected;
  };
  const Case cases[] = {
      {"", "", {}},
      {"Title", "Title", {}},
      {"a = 1 , 2", "a", {"1", "2"}},
      {"a=,,3", "a", {"", "", "3"}},
      {"a=", "a", {""}},
      {"1,Persons", "", {"1", "Persons"}},
      {"*", "", {"*"}},
      {"=5", "", {"", "5"}},
      {"3=Ann\tx\xFFy", "", {"3", "Ann", "x", "y"}},
      {"Title= \"one\" , ' \"two\" '", "Title", {"\"one\"", "two"}},
      {"X, ?, R3", "X", {"?", "R3"}},
      {"\xC9tude=1", "", {"\xC9tude", "1"}},
  };
  for (const Case& c : cases) {
    const SplitLine line = SplitSpecLine(c.Line);
    EXPECT_EQ(line.Keyword, c.Keyword) << c.Line;
    EXPECT_EQ(line.Values, c.Expected) << c.Line;
  }
  EXPECT_EQ(SplitBlockLine("x, ?, R3").Values, (Values{"x", "?", "R3"}));
  EXPECT_EQ(SplitBlockLine("Model=?").Keyword, "Model");
  EXPECT_EQ(SplitSpecLine("a=1").Value(2), "");
}

TEST(SplitLine, TheLastOfVeryManyValuesKeepsTheRest) {
  std::string text = "a=";
  for (std::size_t i = 0; i < kMostValues + 5; ++i) text += "1,";
  const SplitLine line = SplitSpecLine(text);
  EXPECT_EQ(line.Values.size(), kMostValues);
  EXPECT_EQ(line.Values.back(), "1,1,1,1,1,1,");
}

TEST(CleanLine, CommentsControlCharactersAndEmptyLines) {
  const auto cleaned = [](std::string_view raw, bool inSpecification) {
    std::string work = "left over";
    CleanLine(raw, inSpecification, work);
    return work;
  };
  EXPECT_EQ(cleaned("  Title=a;b ; c", true), "Title=a");
  EXPECT_EQ(cleaned("; all comment", true), "");
  EXPECT_EQ(cleaned("Title='a;b'", true), "Title='a");
  EXPECT_EQ(cleaned("\t1\x01,\t2\x02 \x03", true), "1 , 2");
  EXPECT_EQ(cleaned("\t1\x01,\t2", false), "\t1 ,\t2");
  for (const bool inSpecification : {true, false}) {
    EXPECT_EQ(cleaned(" , \t,, ", inSpecification), "");
    EXPECT_EQ(cleaned("", inSpecification), "");
  }
}

}  // namespace
}  // namespace tessaly
