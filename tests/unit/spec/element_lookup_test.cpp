#include "spec/element_lookup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "spec/label_lookup.h"
#include "support/bytes.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

TEST(ElementLookup, Numbers) {
  const std::pair<const char*, std::int32_t> good[] = {{"0", 0},
                                                       {"00", 0},
                                                       {"7", 7},
                                                       {" 12 ", 12},
                                                       {"2 3", 2},
                                                       {"5abc", 5},
                                                       {"3.0", 3},
                                                       {"1e2", 100},
                                                       {"+4", 4},
                                                       {"2147483646", 2147483646},
                                                       {"000000000000000000000000000009", 9}};
  for (const auto& [text, number] : good) EXPECT_EQ(ParseElementNumber(text), number) << text;
  for (const char* text :
       {"", " ", "x", "x0", "-1", "-0", "0.5", "2.5", "2147483647", "9999999999999999999999", "1e99", ".", ".0", "nan"})
    EXPECT_FALSE(ParseElementNumber(text)) << text;
}

TEST(ElementLookup, Ranges) {
  const auto range = [](const char* text) {
    const auto parsed = ParseElementRange(text);
    return parsed ? std::pair{parsed->First, parsed->Second} : std::pair{-9, -9};
  };
  EXPECT_EQ(range("4"), (std::pair{4, 4}));
  EXPECT_EQ(range("3-1"), (std::pair{3, 1}));
  EXPECT_EQ(range("1 _ 3"), (std::pair{1, 3}));
  for (const char* text : {"", "-", "-3", "3-", "A-3", "3-B", "1--3", "1-2147483647"})
    EXPECT_EQ(range(text), (std::pair{-9, -9})) << text;
}

TEST(ElementLookup, RecordsOfDenseAndSparseFacets) {
  SpecRun run("Facets=3\nNull=4\nLabels=\n1,dense\n3-6\n*\n2,sparse\n10\n20,,,,,40\n30\n40\n90\n*\n");
  ASSERT_EQ(run.Error, "");
  const auto find = [&](std::int32_t facet, std::int32_t number) {
    return FindElement(number, run.A.Facets[{facet}], run.A.Elements, 4).value;
  };
  // The null element leaves a gap in facet 1.
  EXPECT_FALSE(run.A.Facets[{1}].FacetDense);
  EXPECT_EQ(find(1, 4), 0);
  EXPECT_EQ(find(3, 4), 0);
  EXPECT_EQ(find(3, 5), -1);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(find(1, 3), 1);
    EXPECT_EQ(find(1, 5), 2);
    EXPECT_EQ(find(1, 2), -1);
    EXPECT_EQ(find(1, 7), -1);
    EXPECT_EQ(find(2, 10), 4);
    EXPECT_EQ(find(2, 30), 6);
    EXPECT_EQ(find(2, 40), 7);
    EXPECT_EQ(find(2, 35), -1);
    EXPECT_EQ(find(2, 90), 8);
    EXPECT_EQ(find(2, 2147483646), -1);
  }
  EXPECT_EQ(FindElementFollow(20, run.A.Facets[{2}], run.A.Elements, 4).value, 7);
  EXPECT_EQ(FindElementFollow(10, run.A.Facets[{2}], run.A.Elements, 4).value, 4);
  EXPECT_EQ(FindElementFollow(11, run.A.Facets[{2}], run.A.Elements, 4).value, -1);
}

TEST(LabelLookup, KeysAbbreviationsAndTies) {
  SpecRun run("Facets=2\nLabels=\n1,a\n0,None\n1,ABC:extra\n2,ABD\n3,north_west \n4,:hidden\n5,ABC\n6,Z\xE9\n*\n");
  ASSERT_EQ(run.Error, "");
  LabelLists lists(run.A.Facets, run.A.Elements, run.Said);
  const auto find = [&](const char* text) {
    const auto element = lists.FindLabel({1}, text);
    return element ? element->value : -1;
  };
  const std::pair<const char*, int> cases[] = {{"ABC", 1},      {"'ABC' ", 1}, {"AB", 1},         {"ABD", 2},
                                               {"ABDE", -1},    {"abc", -1},   {"north-west", 3}, {"north_w", 3},
                                               {":hidden", -1}, {"None", 0},   {"No", 0},         {"", -1},
                                               {"' '", -1},     {"~", -1},     {"Z\xE9", 6},      {"ABC:extra", -1}};
  for (const auto& [text, record] : cases) EXPECT_EQ(find(text), record) << text;
  EXPECT_EQ(run.Said.Messages.back(), " Sorting labels for facet 1");
  EXPECT_FALSE(lists.FindLabel({2}, "x"));
  EXPECT_EQ(lists.FindLabel({2}, "0"), kNoElement) << "a facet without elements still has its null element";
  EXPECT_FALSE(lists.FindLabel({3}, "x"));
}

// The rule in words: among the keys that are the text or begin with it, the first in sort order, then the first
// element.
TEST(LabelLookup, AgreesWithLookingAtEveryLabel) {
  std::mt19937 random(8);
  const auto anyText = [&](std::string_view letters, std::size_t longest) {
    std::string text(1 + random() % longest, ' ');
    for (char& c : text) c = letters[random() % letters.size()];
    return text;
  };
  std::string labels;
  for (int element = 1; element <= 3000; ++element)
    labels += std::to_string(element) + "," + anyText("ab_", 12) + (element % 3 == 0 ? "-abcdefghijkl" : "") + "\n";
  SpecRun run("Facets=1\nLabels=\n1,facet\n" + labels + "*\n");
  ASSERT_EQ(run.Error, "");
  LabelLists lists(run.A.Facets, run.A.Elements, run.Said);
  const auto expected = [&](std::string text) {
    std::replace(text.begin(), text.end(), '_', '-');
    std::pair<std::string, int> best{"~", -1};
    for (const ElementIndex element : run.A.Facets[{1}].Elements()) {
      const std::string key = Replaced(run.A.Elements.ElementLabel[element], '_', '-');
      if (key.starts_with(text)) best = std::min(best, {key, element.value});
    }
    return best.second;
  };
  int found = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text = anyText("ab_-", 11);
    if (round % 4 == 0) text = run.A.Elements.ElementLabel[{1 + round}];
    const auto element = lists.FindLabel({1}, round % 3 == 0 ? " '" + text + "\"" : text);
    ASSERT_EQ(element ? element->value : -1, expected(text)) << text;
    found += element.has_value();
  }
  EXPECT_GT(found, 1000);
  EXPECT_LT(found, 2900);
}

}  // namespace
}  // namespace tessaly
