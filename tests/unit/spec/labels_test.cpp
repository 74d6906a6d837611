#include <gtest/gtest.h>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// Element lines of one facet.
SpecRun OneFacet(const std::string& elements, const std::string& facet = "1,Raters", const std::string& settings = "") {
  return SpecRun("Facets=1\n" + settings + "\nLabels=\n" + facet + "\n" + elements + "\n*\n");
}

/// "number=label" of all elements.
std::vector<std::string> Elements(const SpecRun& run) {
  std::vector<std::string> texts;
  for (const ElementIndex e : run.A.Elements.ElementNumber.all())
    texts.push_back(std::to_string(run.A.Elements.ElementNumber[e]) + "=" + run.A.Elements.ElementLabel[e]);
  return texts;
}

using Texts = std::vector<std::string>;

TEST(Labels, ElementsAreSortedAndUnique) {
  const SpecRun run(
      "Facets=3\nLabels=Nobuild\n2,Items,dummy X,3\n5,Five\n3,Three\n1-2,Same\n*\n1\n7\n7,\"Seven\"\n*\n");
  EXPECT_EQ(run.Error, "");
  EXPECT_EQ(Elements(run), (Texts{"7=Seven", "1=Same", "2=Same", "3=Three", "5=Five"}));
  EXPECT_EQ(run.A.Settings.LabelsBuild, 'N');
  const Facet& first = run.A.Facets[{1}];
  EXPECT_EQ(first.FacetLabel, "1");
  EXPECT_EQ(first.FacetFlags, " ");
  EXPECT_EQ(first.FacetPriority, 1);
  EXPECT_TRUE(first.FacetDense);
  const Facet& second = run.A.Facets[{2}];
  EXPECT_EQ(second.FacetLabel, "Items");
  EXPECT_EQ(second.FacetFlags, "DUMMY X ");
  EXPECT_EQ(second.FacetPriority, 3);
  EXPECT_EQ(second.FacetFirstElement.value, 2);
  EXPECT_EQ(second.FacetLastElement.value, 5);
  EXPECT_EQ(second.FacetLowestNumber, 1);
  EXPECT_EQ(second.FacetHighestNumber, 5);
  EXPECT_FALSE(second.FacetDense);
  const Facet& none = run.A.Facets[{3}];
  EXPECT_EQ(none.FacetLabel, "3");
  EXPECT_FALSE(none.HasElements());
  EXPECT_EQ(none.FacetLowestNumber, -1);
  EXPECT_EQ(none.FacetHighestNumber, -2);
  EXPECT_EQ(run.Said.Progress, "Processing element numbers and labels: facet 2 1");
  EXPECT_EQ(run.Said.Messages,
            (Texts{"Sorting element labels: ", "Loading element labels: ", "Matching elements to models "}));
}

TEST(Labels, PriorityZeroMustBeWritten) {
  EXPECT_EQ(OneFacet("1", "1,a,,0").A.Facets[{1}].FacetPriority, 0);
  EXPECT_EQ(OneFacet("1", "1,a,,").A.Facets[{1}].FacetPriority, 1);
  EXPECT_EQ(OneFacet("1", "1,a,,x").A.Facets[{1}].FacetPriority, 1);
}

TEST(Labels, TheNullElement) {
  const SpecRun run = OneFacet("0,Nobody\n1,a");
  EXPECT_EQ(run.Said.Warnings, Texts{"Warning (16)! Null element 0 is specified in Labels= for facet 1"});
  EXPECT_EQ(Elements(run), Texts{"1=a"});
  EXPECT_EQ(run.A.Facets[{1}].FacetNullLabel, "Nobody");
  const SpecRun moved = OneFacet("0-2", "1", "Null=-1");
  EXPECT_EQ(Elements(moved), (Texts{"0=0", "1=1", "2=2"}));
  EXPECT_EQ(moved.A.Facets[{1}].FacetNullLabel, "-1");
  EXPECT_EQ(OneFacet("0").Error, "Error F72 in line 5: No element numbers specified after Labels=");
}

TEST(Labels, WeightsAndTargets) {
  const SpecRun run = OneFacet("1,a,,,2\n2,b,,,-0.5\n3,c,,,x\n4,d,,,0\n5,e,,,,6\n6,f,,,,7\n7,g\n8-9,h,,,,0\n10,i,,,,x");
  EXPECT_EQ(run.Error, "");
  const auto& stats = run.A.Elements.ElementStats;
  const std::pair<float, std::int32_t> expected[] = {{2.F, -1}, {0.5F, -1}, {1.F, -1}, {0.F, -1}, {1.F, 7},
                                                     {1.F, 7},  {1.F, -1},  {1.F, 0},  {1.F, 0},  {1.F, -1}};
  for (std::int32_t e = 1; e <= 10; ++e) {
    EXPECT_EQ(stats[{e}].ElementWeight, expected[e - 1].first) << e;
    EXPECT_EQ(stats[{e}].TargetElement.value, expected[e - 1].second) << e;
  }
  EXPECT_TRUE(run.A.Elements.WeightsUsed);
  EXPECT_FALSE(OneFacet("1,a,,,1").A.Elements.WeightsUsed);

  std::string chain;
  for (int i = 1; i < 2000; ++i) chain += std::to_string(i) + ",x,,,," + std::to_string(i + 1) + "\n";
  EXPECT_EQ(OneFacet(chain + "2000").A.Elements.ElementStats[{1}].TargetElement.value, 2000);
}

TEST(Labels, TargetFailures) {
  for (const char* target : {"9", "1.5", "-1", "1E+30"}) {
    const SpecRun run = OneFacet(std::string("1,a,,,,") + target);
    EXPECT_EQ(run.Error, "Error F74 in line 5: Invalid target element number in this element specification");
    EXPECT_EQ(run.Said.Warnings,
              Texts{std::string("Invalid target element number: ") + target + " - Specification is: 1,a,,,," + target});
  }
  const SpecRun circle = OneFacet("4,d,,,,5\n5,e,,,,4");
  EXPECT_EQ(circle.Error, "Error F75 in line 6: Target element number circular or nested too deep");
  EXPECT_EQ(circle.Said.Warnings, Texts{"Target element numbers circular or nested too deep: 5,e,,,,4"});
  EXPECT_EQ(OneFacet("4,d,,,,4").Error.substr(0, 9), "Error F75");
}

TEST(Labels, BlockFailures) {
  const std::pair<const char*, const char*> cases[] = {
      {"Facets=2\nLabels=\n3,x\n1\n*", "3,x | Error F9 in line 3: Facet number out of range: 1- 2"},
      {"Facets=2\nLabels=\n0,x\n1\n*", "0,x | Error F9 in line 3: Facet number out of range: 1- 2"},
      {"Facets=2\nLabels=\n1,x\n1\n*\n1,y\n2\n*", "1,y | Error F13 in line 6: Labels= contains the same facet twice"},
      {"Facets=2\nLabels=\n1,x\n1-2147483647,y ; c\n*",
       "1-2147483647,y | Error F23 in line 4: Invalid element number. Must be integers in range 0 - 2147483646"},
      {"Facets=2\nLabels=\n1,x\n*", "1,x | Error F72 in line 3: No element numbers specified after Labels="},
      {"Facets=2\nLabels=\n1,x\n1-5\n0-2147483646\n*",
       "0-2147483646 | Error F73 in line 5: Too many elements specified in Labels=. Processed = 5. Maximum number of "
       "element numbers is usually about 4000000"},
      {"Labels=N ; c\n1,x\n1\n*",
       "Labels=N ; c | Error F34 in line 1: Please specify Facets= before this specification"},
      {"Facets=2\n", " | Error F20: No element labels specified after Labels="},
      {"Title=x\n", " | Error F34: Please specify Facets= before this specification"},
  };
  for (const auto& [text, blamed] : cases) EXPECT_EQ(SpecRun(text).Blamed(), blamed);
}

TEST(Labels, AnotherLineEndsTheBlock) {
  const SpecRun keyword("Facets=1\nLabels=\n1,a\n1,b\n\nXtreme = .4,.2 ; c\n");
  EXPECT_EQ(keyword.Error, "");
  EXPECT_EQ(keyword.A.Settings.XtremeMain, 0.4F);
  EXPECT_EQ(keyword.Said.Warnings, Texts{"Warning (19)! at line 6 \"Xtreme = .4,.2\" * or number = value expected"});
  EXPECT_EQ(keyword.Said.Messages.front(), "");
  EXPECT_EQ(SpecRun("Facets=1\nLabels=\n1,a\n1\n").Said.Warnings.size(), 1U);
  EXPECT_EQ(SpecRun("Facets=1\nLabels=\n1,a\n-1,b\n").Blamed(),
            "-1,b | Error F1 in line 4: \"Specification=value\" expected");
  const SpecRun twice("Facets=1\nLabels=\n1,a\n1\n*\nLabels=\n1,a\n");
  EXPECT_EQ(twice.Blamed(), "1,a | Error F1 in line 7: \"Specification=value\" expected");
}

TEST(Labels, LongListsAreAnnouncedAndTakeNoTime) {
  const SpecRun ranges = OneFacet("1-1000\n5001-7000");
  EXPECT_EQ(ranges.Said.Messages[0], ".adding 1-1000 elements to list.");
  EXPECT_EQ(ranges.Said.Messages[1], ".adding 5001-7000 = 2000 elements to list.");
  std::string lines;
  for (int i = 100000; i > 0; --i) lines += std::to_string(2 * i) + ",x" + std::to_string(i) + "\n";
  const SpecRun many = OneFacet(lines);
  EXPECT_EQ(many.A.Elements.ElementCount(), 100000);
  EXPECT_EQ(many.A.Elements.ElementLabel[{100000}], "x100000");
}

TEST(AnchorStep, EachTypeOfFacet) {
  struct Case {
    const char* Facet;
    const char* Fields;
    ElementStatus Status;
    float Measure;
    float AnchorValue;
    int Group;
  };
  const float smallest = Settings{}.SmallestNumber;
  const ElementStatus anchored = ElementStatus::Anchored;
  const ElementStatus active = ElementStatus::Active;
  // Umean=50, Uscale=10: 60 is 1 logit.
  const Case cases[] = {
      {"1,a", "x", active, 0, 0, 0},
      {"1,a", "x,60", active, 1, 1, 0},
      {"1,a", "x,50", active, 0, smallest, 0},
      {"1,a", "x,word", active, 0, 0, 0},
      {"1,a", "x,5*12,3", active, 1, 1, -3},
      {"1,a,A", "x,60", anchored, 1, 1, 0},
      {"1,a,anchored", "x,50,2", anchored, 0, 0, -2},
      {"1,a,A", "x", active, 0, 0, 0},
      {"1,a,D", "x,60,4", anchored, 0, 0, -4},
      {"1,a,G", "x,60,4", anchored, 1, 1, 4},
      {"1,a,X", "x,0,4", anchored, -5, -5, 4},
      {"1,a,G", "x,,4", active, 0, 0, -4},
      {"1,a,G", "x,50", active, 0, smallest, 0},
  };
  for (const Case& c : cases) {
    const SpecRun run = OneFacet(std::string("1,") + c.Fields, c.Facet, "Umean=50,10");
    const std::string what = std::string(c.Facet) + ": " + c.Fields;
    EXPECT_EQ(run.Error, "") << what;
    EXPECT_EQ(run.A.Elements.ElementStatus[{1}], c.Status) << what;
    EXPECT_EQ(run.A.Elements.ElementMeasure[{1}], c.Measure) << what;
    EXPECT_EQ(run.A.Elements.ElementStats[{1}].AnchorValue, c.AnchorValue) << what;
    EXPECT_EQ(run.A.Elements.ElementGroup[{1}], c.Group) << what;
    EXPECT_EQ(run.A.Facets[{1}].FacetGroupMax, std::abs(c.Group)) << what;
  }
  EXPECT_EQ(
      OneFacet("1,x,60\n2,y,60,1", "1,a,G").Said.Warnings,
      Texts{"Warning (13)! Measure values specified for elements in group-anchored facet 1 without a group number"});
}

TEST(AnchorStep, GroupsFromLabels) {
  const std::pair<const char*, int> cases[] = {{"$3W2", 12}, {"$3w1", 1}, {"$4", 2},
                                               {"$", 0},     {"$W2", 0},  {"$7", 0},
                                               {"$4W9", 0},  {"$3W0", 0}, {"$99999999999W2", 0}};
  for (const auto& [group, number] : cases) {
    const SpecRun run = OneFacet(std::string("1,ab12cd,,") + group);
    if (std::string_view(group) == "$4W9") {
      EXPECT_EQ(run.A.Facets[{1}].FacetGroupMax, 2) << "the number that 2cd begins with";
    } else {
      EXPECT_EQ(run.A.Facets[{1}].FacetGroupMax, number) << group;
    }
  }
}

TEST(AnchorStep, Failures) {
  const SpecRun group = OneFacet("7,Ann,0.5,$1W2");
  EXPECT_EQ(group.Blamed(), " | Error F24: Invalid group number");
  EXPECT_EQ(group.Said.Warnings, Texts{"Invalid group number: An (7,Ann,0.5,$1W2 )"});
  EXPECT_EQ(OneFacet("7,Ann,,32761").Error, "Error F24: Invalid group number");
  EXPECT_EQ(OneFacet("7,Ann,95,2", "1,a,A").Error, "Failure (20)! Anchor value outside range: 95 (7,Ann,95,2)");
  EXPECT_EQ(OneFacet("7,Ann,1E+30", "1", "Uscale=1E-30").Error.substr(0, 12), "Failure (20)");
}

}  // namespace
}  // namespace tessaly
