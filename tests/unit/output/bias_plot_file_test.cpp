#include "output/bias_plot_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "support/bytes.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

struct Plotted {
  int Number = 0;
  std::string Label;
  float Measure = 0;
};

void AddFacet(Analysis& analysis, const std::string& label, bool positive, const std::vector<Plotted>& elements) {
  Facet facet;
  facet.FacetLabel = label;
  facet.FacetPositive = positive;
  facet.FacetFirstElement = analysis.Elements.ElementNumber.last() + 1;
  for (const Plotted& element : elements) {
    facet.FacetLastElement = analysis.Elements.ElementNumber.add(element.Number);
    analysis.Elements.ElementLabel.add(element.Label);
    analysis.Elements.ElementMeasure.add(element.Measure);
  }
  facet.FacetElementCount = static_cast<std::int32_t>(elements.size());
  analysis.Facets.add(facet);
}

void AddTerm(BiasTerms& terms, std::int64_t key, float size, float error, float raw, float count) {
  BiasTerm term;
  term.Flag = BiasFlag::Ordinary;
  term.BiasSize = size;
  term.StandardError = error;
  term.RawSum = raw;
  term.CountSum = count;
  terms.BiasKey.add(key);
  terms.Terms.add(term);
}

struct Written {
  /// With bars for tabs, in sheets.
  std::vector<std::string> Sheets;
  std::vector<std::string> Warnings;
};

/// The file cut at its empty lines.
Written Write(const BiasTerms& terms, BiasPlotSheets sheets, const Analysis& analysis) {
  const TestFolder folder;
  TextOutput file(folder.Path() + "plot.txt");
  RecordingConsole console;
  BiasPlotFile(terms, sheets, analysis, "2020-02-29 12:00:00", file, console);
  file.Close();
  std::ifstream stream(file.Path(), std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  std::replace(text.begin(), text.end(), '\t', '|');
  Written written{{}, console.Warnings};
  constexpr std::string_view kSheetEnd = "\r\n\r\n";
  for (std::size_t end = 0; (end = text.find(kSheetEnd)) != std::string::npos; text.erase(0, end + kSheetEnd.size()))
    written.Sheets.push_back(text.substr(0, end));
  EXPECT_EQ(text, "");
  return written;
}

// Facets 2 (positive) and 3 (negative) of a design. With a3 for element 3 of facet 2, b1 for element 1 of facet 3:
//   term     a3 b1          a7 b1  a3 b2  a7 b2  a3 b4  a7 b4
//   size     not estimable  -.25    .125  1.5    -.75    .5
//   error                    .5     .3     .4     0      .3
//   raw sum                  3      1      5      2      7
//   count                    2      2      4      1      0
// Measures: a3 .5, a7 -.25; b1 1, b2 -1, b4 .25. Uscale is 4. The first term that counts is of a7, which so comes
// first.
class BiasPlotFileTest : public testing::Test {
 protected:
  BiasPlotFileTest() {
    AddFacet(A, "Person", true, {{1, "1"}});
    AddFacet(A, "Rater", true, {{3, "Ann", .5F}, {7, "7", -.25F}});
    AddFacet(A, "Item", false, {{1, "=x", 1}, {2, "Bo", -1}, {4, "4", .25F}});
    A.Settings.Title = "^Essays";
    A.Settings.Uscale = 4;
  }

  BiasTerms Terms(const std::vector<FacetNumber>& facets) const {
    BiasTerms terms(facets, A.Facets);
    AddTerm(terms, 0, 9, 9, 9, 9);
    terms.Terms[{1}].Flag = BiasFlag::NotEstimable;
    AddTerm(terms, 1, -.25F, .5F, 3, 2);
    AddTerm(terms, 2, .125F, .3F, 1, 2);
    AddTerm(terms, 3, 1.5F, .4F, 5, 4);
    AddTerm(terms, 4, -.75F, 0, 2, 1);
    AddTerm(terms, 5, .5F, .3F, 7, 0);
    return terms;
  }

  Analysis A;
};

const std::string kRaterRows = "\r\nNumber|2. Rater||1. =x|2. Bo|_4\r\n";
const std::string kItemRows = "\r\nNumber|3. Item||_7|3. Ann\r\n";

TEST_F(BiasPlotFileTest, SheetsOfTermsHaveTheOrientationOfTheirRows) {
  const Written written = Write(Terms({{2}, {3}}), {true, false}, A);
  const std::vector<std::string> expected = {
      // (measure + size) x 4
      "2020-02-29 12:00:00||Essays|Bias/Interaction: 2. Rater, 3. Item\r\n"
      "AM-2-3|2. Rater: Absolute Measure (+)||3. Item" +
          kRaterRows +
          "7|_7|_7|-2.00|5.00|1.00\r\n"
          "3|Ann|3. Ann| |2.50|-1.00",
      // (measure - size) x 4
      "AM-3-2|3. Item: Absolute Measure (-)||2. Rater" + kItemRows +
          "1|_=x|1. =x|5.00| \r\n"
          "2|Bo|2. Bo|-10.00|-4.50\r\n"
          "4|_4|_4|-1.00|4.00",
      // raw sum / count, the count of a7 b4 as 1
      "AO-2-3|2. Rater: Average Observation||3. Item" + kRaterRows +
          "7|_7|_7|1.50|1.25|7.00\r\n"
          "3|Ann|3. Ann| |.50|2.00",
      "AO-3-2|3. Item: Average Observation||2. Rater" + kItemRows +
          "1|_=x|1. =x|1.50| \r\n"
          "2|Bo|2. Bo|1.25|.50\r\n"
          "4|_4|_4|7.00|2.00",
      // size x 4, and turned around
      "RM-2-3|2. Rater: Relative-to-overall Measure (+)||3. Item" + kRaterRows +
          "7|_7|_7|-1.00|6.00|2.00\r\n"
          "3|Ann|3. Ann| |.50|-3.00",
      "RM-3-2|3. Item: Relative-to-overall Measure (-)||2. Rater" + kItemRows +
          "1|_=x|1. =x|1.00| \r\n"
          "2|Bo|2. Bo|-6.00|-.50\r\n"
          "4|_4|_4|-2.00|3.00",
      // -.25 / .5, 1.5 / .4, .5 / .3; .125 / .3, and no figure where the error is 0
      "TV-2-3|2. Rater: t-value relative-to-overall (+)||3. Item" + kRaterRows +
          "7|_7|_7|-.50|3.75|1.67\r\n"
          "3|Ann|3. Ann| |.42| ",
      "TV-3-2|3. Item: t-value relative-to-overall (-)||2. Rater" + kItemRows +
          "1|_=x|1. =x|.50| \r\n"
          "2|Bo|2. Bo|-3.75|-.42\r\n"
          "4|_4|_4|-1.67| "};
  EXPECT_EQ(written.Sheets, expected);
  EXPECT_TRUE(written.Warnings.empty());
}

TEST_F(BiasPlotFileTest, SheetsOfPairsHaveTheOrientationOfTheirColumns) {
  const std::vector<std::string> sheets = Write(Terms({{2}, {3}}), {false, true}, A).Sheets;
  ASSERT_EQ(sheets.size(), 4U);
  // At b1 a term is missing, at b4 an error is 0. At b2: 1.5 - .125 = 1.375, its error sqrt(.4^2 + .3^2) = .5.
  EXPECT_EQ(sheets[0],
            "2020-02-29 12:00:00||Essays|Bias/Interaction: 2. Rater, 3. Item\r\n"
            "PM-2-3|2. Rater: Pairwise Relative Measure (-)||3. Item" +
                kRaterRows + "7_3|7 _ Ann|7. 7 _ 3. Ann| |-5.50| ");
  EXPECT_EQ(sheets[2],
            "PT-2-3|2. Rater: Pairwise t-statistic (-)||3. Item" + kRaterRows + "7_3|7 _ Ann|7. 7 _ 3. Ann| |-2.75| ");
  // b1 and b4 have 2 responses together, too few. By a7, b1 - b2: -.25 - 1.5 = -1.75, error sqrt(.5^2 + .4^2) = .6403;
  // b2 - b4: 1.5 - .5 = 1, error .5.
  EXPECT_EQ(sheets[1], "PM-3-2|3. Item: Pairwise Relative Measure (+)||2. Rater" + kItemRows +
                           "1_2|_=x _ Bo|1. =x _ 2. Bo|-7.00| \r\n"
                           "2_4|Bo _ 4|2. Bo _ 4. 4|4.00| ");
  EXPECT_EQ(sheets[3], "PT-3-2|3. Item: Pairwise t-statistic (+)||2. Rater" + kItemRows +
                           "1_2|_=x _ Bo|1. =x _ 2. Bo|-2.73| \r\n"
                           "2_4|Bo _ 4|2. Bo _ 4. 4|2.00| ");
}

TEST_F(BiasPlotFileTest, OnlyTwoFacetsArePlotted) {
  EXPECT_TRUE(Write(Terms({{1}, {2}, {3}}), {true, true}, A).Sheets.empty());
  EXPECT_TRUE(Write(Terms({{3}}), {true, true}, A).Sheets.empty());
}

/// The sheets of a first facet whose elements, in as many groups as there are sizes, each meet one element of the
/// second facet of their own.
Written WriteGroups(const std::vector<int>& sizes, BiasPlotSheets sheets) {
  std::vector<Plotted> members, groups;
  for (const int size : sizes) {
    groups.push_back({static_cast<int>(groups.size()) + 1, "G"});
    for (int i = 0; i < size; ++i) members.push_back({static_cast<int>(members.size()) + 1, "M"});
  }
  Analysis analysis;
  AddFacet(analysis, "Member", true, members);
  AddFacet(analysis, "Group", false, groups);
  BiasTerms terms({{1}, {2}}, analysis.Facets);
  std::int64_t member = 0;
  for (std::size_t group = 0; group < sizes.size(); ++group) {
    for (int i = 0; i < sizes[group]; ++i, ++member)
      AddTerm(terms, member + static_cast<std::int64_t>(group * members.size()), 1, 1, 1, 2);
  }
  return Write(terms, sheets, analysis);
}

TEST(BiasPlotFileLimits, TwoHundredAndFiftyOfAKindAndAWarningIfThereAreMore) {
  const std::vector<std::string> warning = {"Warning (11)! Plotted interactions pruned to first 250 per Excel plot"};
  const auto rows = [](const std::string& sheet) { return SplitAt(sheet, '\n').size(); };
  const auto columns = [](const std::string& sheet) { return SplitAt(SplitAt(sheet, '\n').back(), '|').size(); };
  struct Case {
    std::vector<int> Groups;
    bool Pairs, Pruned;
  };
  // Groups of 19, 13 and 2 have 171 + 78 + 1 = 250 pairs.
  for (const Case& c : {Case{{250}, false, false}, Case{{251}, false, true}, Case{{249, 2}, false, true},
                        Case{{19, 13, 2}, true, false}, Case{{19, 13, 2, 2}, true, true}}) {
    const Written written = WriteGroups(c.Groups, {!c.Pairs, c.Pairs});
    ASSERT_FALSE(written.Sheets.empty());
    // The first sheet has the line of the file above its own two.
    EXPECT_EQ(rows(written.Sheets[0]), 253U) << c.Groups.size();
    EXPECT_EQ(written.Warnings, c.Pruned ? warning : std::vector<std::string>()) << c.Groups.size();
    if (!c.Pairs) {
      EXPECT_EQ(columns(written.Sheets[1]), 253U) << c.Groups.size();
    }
  }
}

}  // namespace
}  // namespace tessaly
