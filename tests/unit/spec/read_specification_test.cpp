#include "spec/read_specification.h"

#include <gtest/gtest.h>

#include <random>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

using Texts = std::vector<std::string>;

TEST(ReadSpecification, WhereTheDataAre) {
  const SpecRun inlineData(WithTwoFacets("") + "Data=\n1,1,0 ;; kept\n");
  EXPECT_TRUE(inlineData.A.Settings.InlineData);
  EXPECT_EQ(inlineData.Rest, Texts{"1,1,0 ;; kept"});
  EXPECT_EQ(inlineData.A.Input.LineNumber, 13) << "lines go on counting";
  EXPECT_TRUE(inlineData.A.SpecComments.empty());

  const SpecRun named(WithTwoFacets("Data='a.csv'+b.csv\nData=c.csv"));
  EXPECT_EQ(named.A.Settings.DataFileName, "a.csv'+b.csv");
  EXPECT_FALSE(named.A.Settings.InlineData);

  const SpecRun replaced(WithTwoFacets("Data=a.csv") + "Data=\nnot a specification\n1,2,3\n");
  EXPECT_EQ(replaced.Error, "");
  EXPECT_FALSE(replaced.A.Settings.InlineData);
  EXPECT_TRUE(replaced.Rest.empty());
}

TEST(ReadSpecification, VisibleCommentsAndIncludedBlocks) {
  const TestFolder folder;
  folder.Write("labels.txt", "Labels=\n1,a\n1 ;; one\n*\n2,b\n");
  const std::string path = folder.Write("s.txt", "Facets=2 ;; two\n;; alone\n%labels.txt\n1\n*\nPositive=2\n");
  const SpecRun run = SpecRun::OfFile(path);
  EXPECT_EQ(run.Error, "");
  EXPECT_EQ(run.A.Elements.ElementCount(), 2);
  EXPECT_EQ(run.A.SpecComments, (Texts{"Facets=2 ;; two", ";; alone", "1 ;; one"}));
}

TEST(ReadSpecification, ALineTooLongToBeOneIsNotText) {
  const auto titled = [](std::size_t length) {
    const std::string keyword = "Title=";
    return SpecRun(keyword + std::string(length - keyword.size(), 'x') + "\n" + WithTwoFacets("Data=d.txt"));
  };
  EXPECT_EQ(titled(1 << 16).Error, "");
  EXPECT_EQ(titled((1 << 16) + 1).Error, "Error F44 in line 1: Invalid file format: not in DOS-Text (ASCII) format.");
}

/// A specification with one of everything.
constexpr std::string_view kEverything = R"(Title="All", of it
Facets=3,4
Entered=1,2,0,3
Positive=1,2
Noncenter=1
Umean=50,10,1
Missing=9,.
Delements=1N,LN
Dvalues=
3,2,1,2
1,2,$G
*
Esubtotals=
1,2,3
*
Glabel=1,2,Group
Models=
?B,1-3,#,Essay,2
-?,X,$,R3K
M=1_9,,#2,D2
*
Rating scale=Essay,R4,Specific,Keep,,Subtitle
0,low,-1,A,9+7-8
1=mid
-1,,,,x+y
*
Arrange=2mN,f
Tables=111
Hardware=60
Xtreme=.3,.5
Labels=Nobuild
1,Persons,G,2
1-3,abc,51,1,2
4,ab12,,$3W2,,1
0,Null
*
2,Items,A
7=seven,45
*
3,Raters,D
1-2
*
Data=
1,7,1,2,3
)";

TEST(ReadSpecification, ASpecificationWithOneOfEverything) {
  const SpecRun run{std::string(kEverything)};
  EXPECT_EQ(run.Error, "");
  EXPECT_EQ(run.Rest, Texts{"1,7,1,2,3"});
  EXPECT_EQ(run.A.Elements.ElementCount(), 7);
}

/// Whatever is cut, doubled or changed: a failure or none, and nothing out of bounds.
TEST(ReadSpecification, DamagedSpecificationsAreReadOrRefused) {
  std::mt19937 random(20240229);
  const auto below = [&random](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
  constexpr std::string_view kOddBytes = ",=*;-_#?$XB%+()\"'\t0123456789AZ.\xA0\xC2\xFF\n\x01";
  const Texts kOddTexts = {"2147483647", "-1", "1E+38", "99999999999999999999", "0-2147483646", "$", "1-4000001"};
  std::size_t refused = 0;
  constexpr int kRounds = 2000;
  for (int round = 0; round < kRounds; ++round) {
    std::string text(kEverything);
    for (std::size_t change = 0; change <= below(4); ++change) {
      const std::size_t at = below(text.size());
      const std::size_t length = std::min(below(30), text.size() - at);
      switch (below(5)) {
        case 0:
          text.erase(at, length);
          break;
        case 1:
          text.insert(at, text, below(text.size()), length);
          break;
        case 2:
          text[at] = static_cast<char>(below(256));
          break;
        case 3:
          text[at] = kOddBytes[below(kOddBytes.size())];
          break;
        default:
          text.replace(at, std::min<std::size_t>(length, 3), kOddTexts[below(kOddTexts.size())]);
          break;
      }
      if (text.empty()) text = "x";
    }
    refused += SpecRun(text).Error.empty() ? 0 : 1;
  }
  EXPECT_GT(refused, kRounds / 10U);
  EXPECT_LT(refused, 9U * kRounds / 10U);
}

}  // namespace
}  // namespace tessaly
