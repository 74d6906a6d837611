#include "output/subset_anchor_file.h"

#include <gtest/gtest.h>

#include "fixture/analysis_fixture.h"
#include "unit/output/stored_data.h"

namespace tessaly {
namespace {

std::string Proposal(const Analysis& analysis) {
  Console silence;
  return TextWritten([&](TextOutput& output) { WriteSubsetAnchorFile(analysis, silence, output); });
}

constexpr std::string_view kOpening =
    "To resolve subset problems, copy-and-paste after Labels=\n"
    "Non-center= must reference a facet that is not anchored or group-anchored.\n";
constexpr std::string_view kSorry =
    " Sorry! Group-anchor file could not be constructed automatically. Please see Table 7 for subset numbers.\n";

// Persons 1 and 2 meet items 1 and 2 only, persons 3 and 4 items 3 and 4; all meet the rater.
constexpr std::string_view kSubsetData = "1,1,1,1\n1,2,1,0\n2,1,1,0\n2,2,1,1\n3,3,1,1\n3,4,1,0\n4,3,1,0\n4,4,1,1\n";
constexpr std::string_view kHead = "Facets=3\nUmean=50,10\nNoncenter=1\nModels=?,?,?,D\n";

std::string Specification(const std::string& persons, const std::string& items) {
  return std::string(kHead) + "Labels=\n" + persons + "*\n" + items + "*\n3,Rater,A\n1,Rita,50,9\n*\nData=data.txt\n";
}

TEST(SubsetAnchorFile, ProposesGroupsThatConnectTheSubsets) {
  const std::string persons = "1,Persons\n1,Ann\n2,Bob\n3,Cem\n4,Dot\n";
  const std::string items = "2,Items\n1-4,Item\n";
  const FinishedAnalysis run =
      RunSpecification(Specification(persons, items), {{"data.txt", std::string(kSubsetData)}});
  ASSERT_EQ(run.A.Subsets.SubsetCount, 2);
  const std::string comment =
      " ; these element specifications can be placed in your Labels= after the existing element specifications for "
      "this facet\n";
  const std::string newItems = "2,Items, G ; group-anchoring at Umean = 50 with 2 subsets\n" + comment +
                               "1,Item,50,10\n2,Item,50,10\n3,Item,50,11\n4,Item,50,11\n";
  EXPECT_EQ(Proposal(run.A),
            std::string(kOpening) +
                "\nGroup anchor this facet and/or the other facets (please experiment to see what works):\n\n"
                "1,Persons, G ; group-anchoring at Umean = 50 with 2 subsets\n" +
                comment + "1,Ann,50,10\n2,Bob,50,10\n3,Cem,50,11\n4,Dot,50,11\n*\n" +
                "\nAnd/or group anchor this facet:\n\n" + newItems + "*\n");

  const FinishedAnalysis again =
      RunSpecification(Specification(persons, newItems), {{"data.txt", std::string(kSubsetData)}});
  EXPECT_EQ(again.A.Subsets.SubsetCount, 0);
  EXPECT_EQ(Proposal(again.A), std::string(kOpening).append(kSorry));
}

// An element in two subsets, one subset alone in a facet, and no room above the highest group.
TEST(SubsetAnchorFile, FirstSubsetsAndFreeGroups) {
  FinishedAnalysis run =
      RunSpecification(Specification("1,Persons\n1,Ann\n2,Bob\n3,Cem\n4,Dot\n", "2,Items\n1-4,Item,,32759\n"),
                       {{"data.txt", std::string(kSubsetData)}});
  auto& subsets = run.A.Subsets.ElementSubsets;
  subsets.assign(run.A.Elements.ElementCount(), {});
  subsets[run.At(1, 1)] = {3, 1};
  subsets[run.At(1, 2)] = {1};
  subsets[run.At(1, 4)] = {7, 3};
  subsets[run.At(2, 1)] = {2};
  const std::string text = Proposal(run.A);
  EXPECT_NE(text.find(" with 3 subsets\n"), std::string::npos);
  EXPECT_NE(text.find("\n1,Ann,50,32760\n2,Bob,50,1\n4,Dot,50,2\n*\n"), std::string::npos) << text;
  EXPECT_EQ(text.find("Items"), std::string::npos);
}

}  // namespace
}  // namespace tessaly
