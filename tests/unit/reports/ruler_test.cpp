#include "reports/ruler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>

#include "reports/table6_rulers.h"
#include "support/bytes.h"
#include "support/number_text.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

using Lines = std::vector<std::string>;

struct Standing {
  std::string Label;
  float Measure = 0;
  ElementStatus Status = ElementStatus::Active;
};

/// Elements where the test puts them, and one scale of three categories that is a mirror image of itself: thresholds
/// (logit) at -1 and 1.
class RulerWorld {
 public:
  RulerWorld() {
    A.Scales.CategoryStep.Create(1, 3);
    A.Scales.CategoryAnchor.Create(1, 3);
    A.Scales.TopCategory = 3;
    A.Scales.CategoryOrdinal.Create(1, 4);
    A.Scales.CategoryStep(scale_, 1) = -1;
    A.Scales.CategoryStep(scale_, 2) = 1;
    // Raw category 2 is not in use.
    for (const int raw : {0, 1, 2, 3})
      A.Scales.CategoryOrdinal(scale_, raw) = static_cast<std::int16_t>(raw < 2 ? raw : raw == 2 ? -1 : 2);
    Scale scale;
    scale.ScaleTopCategory = 2;
    A.Scales.Scales.add(scale);
    A.Scales.ScaleOrder = {scale_};
    RatingScaleDefinition definition;
    for (const char* label : {"", "never", "now and then", "", "öfter"})
      definition.Categories.push_back({label, {}, ' ', {}, true});
    ModelStatement statement;
    statement.ModelField = {"M", "Mood", "1", ""};
    statement.ModelDefinition = A.Models.Definitions.add(definition);
    A.Models.Statements.add(statement);
  }

  void AddFacet(const std::string& label, const std::vector<Standing>& elements) {
    Facet facet;
    facet.FacetLabel = label;
    facet.FacetPositive = A.Facets.empty();
    facet.FacetFirstElement = A.Elements.ElementNumber.last() + 1;
    for (const Standing& element : elements) {
      A.Elements.ElementNumber.add(++facet.FacetElementCount);
      A.Elements.ElementLabel.add(element.Label);
      A.Elements.ElementMeasure.add(element.Measure);
      A.Elements.ElementStatus.add(element.Status);
      A.Elements.ElementStats.add({});
      facet.FacetLabelWidth = std::max(facet.FacetLabelWidth, DisplayLength(element.Label));
    }
    facet.FacetLastElement = A.Elements.ElementNumber.last();
    facet.FacetNumberWidth = static_cast<int>(BareText(facet.FacetElementCount).size());
    A.Facets.add(facet);
  }

  Lines Rulers(const std::string& vertical, const std::string& yardstick, bool ofSubsets = false) const {
    const TestFolder folder;
    ReportWriter report(A.Settings);
    report.OpenReportFile(folder.Path() + "report.txt");
    ResponseKernel kernel(A.Scales, A.Settings.HardwareExponent);
    Console console;
    (ofSubsets ? SubsetRulers : VerticalRulers)(vertical, yardstick, A, kernel, report, console);
    report.CloseReportFile();
    std::ifstream file(folder.Path() + "report.txt", std::ios::binary);
    Lines lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line.substr(0, line.size() - 1));
    return lines;
  }

  Analysis A;

 private:
  static constexpr ScaleNumber scale_{0};
};

/// The rows of the first picture between its headings, cut into cells; the first one holds the number of the axis.
std::vector<Lines> Rows(const Lines& report) {
  std::vector<Lines> rows;
  int rules = 0;
  for (const std::string& line : report) {
    if (line.starts_with("|--") || line.starts_with("+--")) ++rules;
    if (rules != 2 || line.starts_with("|--")) continue;
    const bool numbered = line[5] == ' ' && line[4] != ' ';
    const char between = numbered && line[0] == '|' ? '+' : line[0];
    Lines& row = rows.emplace_back();
    for (const std::string_view cell : SplitAt(std::string_view(line).substr(1, line.size() - 2), between))
      row.emplace_back(TrimBlanks(cell));
  }
  return rows;
}

std::string Column(const std::vector<Lines>& rows, std::size_t column) {
  Lines cells;
  for (const Lines& row : rows) cells.push_back(row.at(column));
  return Joined(cells, ",");
}

TEST(Vertical, ItemsMakeColumns) {
  RulerWorld world;
  world.AddFacet("persons", std::vector<Standing>(21));
  world.AddFacet("nobody", {});
  world.AddFacet("items", std::vector<Standing>(20));
  for (const auto& [vertical, echoed] : {std::pair<std::string, std::string>{"", "1*,3A,S"},
                                         {"y, 1N", "1*,3A,S"},
                                         {"3, 1n ,sl", "3A,1N,SL"},
                                         {"N,#S", ""},
                                         {"(N,#S)", "1N,3N,#S"},
                                         {"0,1C,*", "1A,3A,1C,1*,3*,S"},
                                         {"2A,4A,-1A,1.5A,1E9,99999999999999999999A,3A", "3A,S"},
                                         {"((1A) , ) (3C", "1A,S;3C,S"},
                                         {"(,,)", "S"}}) {
    std::string columns;
    for (const std::string& line : world.Rulers(vertical, "")) {
      if (!line.starts_with("Vertical = (")) continue;
      columns += (columns.empty() ? "" : ";") + line.substr(12, line.find(") Yardstick") - 12);
    }
    EXPECT_EQ(columns, echoed) << vertical;
  }
  std::string many;
  for (int i = 0; i < 3000; ++i) many += "(0,0,0,0),";
  EXPECT_EQ(SplitRulers(many).size(), kMostRulers);
  EXPECT_EQ(ParseVertical(Replaced(Replaced(many, '(', ' '), ')', ' '), world.A.Facets).Facets.size(),
            kMostFacetColumns);
}

TEST(RulerAxis, HoldsWhatTheYardstickLeavesOpenAndWhatItOverdoes) {
  RulerWorld world;
  const float nan = std::numeric_limits<float>::quiet_NaN();
  world.AddFacet("f", {{"a", 1.2F}, {"b", -0.3F}, {"c", 4.4F, ElementStatus::Maximum}, {"d", nan}});
  const auto axis = [&](const std::string& yardstick) {
    return FitRulerAxis(ParseVertical("1A", world.A.Facets), ParseYardstick(yardstick), world.A.Facets,
                        world.A.Elements, world.A.Settings);
  };
  struct Case {
    std::string Yardstick;
    double Low, High, LinesPerUnit;
  };
  for (const Case& c : {Case{"", -1, 2, 10}, Case{"0,0,0,0,m", -1, 5, 8}, Case{"0,0,-5,5", -5, 5, 5},
                        Case{",3,5,-5,End", -5, 5, 3}, Case{"0,-4,0.5,200", 0.5, 200, 1}, Case{"x,y,z", -1, 2, 10}}) {
    const RulerAxis found = axis(c.Yardstick);
    EXPECT_EQ(std::tuple(found.Low, found.High, found.LinesPerUnit), std::tuple(c.Low, c.High, c.LinesPerUnit))
        << c.Yardstick;
  }
  for (const std::string lines : {"1e9", "3e-9", "1e400", "2", "0.3"})
    for (const std::string ends : {"-2.5,2.5", "1e30,-1e30", "1e38,2e38", "0,1e-30", "-7,900", "0,0"})
      for (const float uscale : {1.0F, -100.0F, 1e30F, 1e-30F}) {
        world.A.Settings.Uscale = uscale;
        const RulerAxis found = axis("9," + lines + "," + ends);
        ASSERT_GE(found.LastLine, 1);
        ASSERT_LE(found.LastLine, kMostRulerLines);
        std::map<std::int32_t, int> shown;
        for (std::int32_t line = 0; line <= found.LastLine; ++line) {
          const auto number = found.NumberAt(line);
          if (!number) continue;
          ++shown[*number];
          ASSERT_EQ(found.LineOf(*number), line);
          ASSERT_LE(static_cast<int>(BareText(*number).size()), found.NumberWidth());
        }
        for (double n = std::ceil(found.Low); found.LinesPerUnit >= 1 && n <= found.High; ++n)
          ASSERT_EQ(shown[static_cast<std::int32_t>(n)], 1) << lines << ";" << ends << ";" << n;
      }
}

TEST(Ruler, ElementsStandAtTheirMeasuresOrAtTheEnds) {
  RulerWorld world;
  using enum ElementStatus;
  world.AddFacet("persons", {{"mid", 0.9F},
                             {"top", 9, Maximum},
                             {"low", -1.8F, Minimum},
                             {"far", 30},
                             {"one", -0.1F, OneDatum},
                             {"fix", 1, Anchored},
                             {"gone", 1, Unobserved},
                             {"lost", 1, Unmeasurable}});
  EXPECT_EQ(Column(Rows(world.Rulers("1A,#", "0,1,-3,3")), 1), "far  top,,mid,one,,,low");
  EXPECT_EQ(Column(Rows(world.Rulers("1A,#", "0,1,-3,3,Measure")), 1), "far  top,,mid,one,,low,");
  world.A.Settings.OmitUnobserved = false;
  EXPECT_EQ(Column(Rows(world.Rulers("1N,#", "0,1,-3,3")), 1), "2 4,,1 6,5,,,3");
  EXPECT_EQ(Column(Rows(world.Rulers("1N,#", "0,1,-3,3")), 0), "3,2,1,0,-1,-2,-3");
  world.A.Settings.Uscale = -10;
  world.A.Settings.Umean = 50;
  // The least able have the highest figures.
  EXPECT_EQ(Column(Rows(world.Rulers("1A,#", "0,.1,30,70")), 1), "low,,one,fix  mid,far  top");
}

TEST(Ruler, WhatDoesNotFitGoesIntoContinuationLines) {
  RulerWorld world;
  std::vector<Standing> elements;
  for (int i = 0; i < 10; ++i) elements.push_back({"Größe " + BareText(9 - i), 1 + 0.01F * static_cast<float>(i)});
  elements.push_back({"上下 名前", 2});
  world.AddFacet("objects of wide", elements);
  // Target widths for three numbers in a line, and for one label.
  const std::vector<Lines> numbers = Rows(world.Rulers("1N,1*,#", "31,1,0,2"));
  EXPECT_EQ(Column(numbers, 1), "11,1  2  3,4  5  6,7  8  9,10,");
  EXPECT_EQ(Column(numbers, 0), "2,1,,,,0");
  EXPECT_EQ(Column(numbers, 2).substr(0, 17), "*,**********,,,,");
  // A column of one element in a line narrows its heading too while another one has several.
  world.AddFacet("Examiner", {{"one", 1}});
  const Lines narrow = world.Rulers("1N,2N,#", "22,1,0,2");
  EXPECT_NE(std::find(narrow.begin(), narrow.end(), "|Measr|+object|-Examin|"), narrow.end());
  const Lines report = world.Rulers("1A,1C,S", "10,1,0,2");
  EXPECT_EQ(Column(Rows(report), 1),
            "上下 名前,Größe 0,Größe 1,Größe 2,Größe 3,Größe 4,Größe 5,Größe 6,Größe 7,Größe 8,Größe 9,");
  EXPECT_EQ(Column(Rows(report), 2), "1,10,,,,,,,,,,");
  EXPECT_NE(std::find(report.begin(), report.end(),
                      "Metric maintained by + or |.  Spacing expanded with : to show all elements."),
            report.end());
  EXPECT_EQ(report.back(), "S.1: Model = Mood");
  // Every line is as wide as its rules, in every form of column.
  for (const std::string vertical : {"1A,1N,1*,1C,SL", "1*,S", "1C,#"})
    for (const std::string yardstick : {"", "40", "1", "70,0.2,-2000,90000"}) {
      const Lines lines = world.Rulers(vertical, yardstick);
      std::size_t at = 0;
      while (!lines.at(at).starts_with("+--")) ++at;
      for (const std::size_t width = lines[at].size(); !lines.at(at).empty() && lines[at].front() != 'M'; ++at) {
        ASSERT_EQ(static_cast<std::size_t>(DisplayLength(lines[at])), width) << lines[at];
      }
    }
}

TEST(ScaleColumn, CategoriesStandWhereTheClosedFormPutsThem) {
  // With x = exp(measure) and thresholds -1 and 1 the expected score is 0.5 where 3 x^2 + e x = 1.
  const double e = std::exp(1.0);
  const double half = std::log((std::sqrt(e * e + 12) - e) / 6);
  RulerWorld world;
  world.AddFacet("f", {{"a", 0}});
  struct Units {
    float Uscale, Umean;
  };
  for (const Units units : {Units{1, 0}, Units{10, 50}, Units{-10, 50}}) {
    world.A.Settings.Uscale = units.Uscale;
    world.A.Settings.Umean = units.Umean;
    const double size = std::fabs(double{units.Uscale});
    const auto text = [](double value) { return BareText(static_cast<float>(value)); };
    const std::string yardstick =
        "0," + text(8 / size) + "," + text(double{units.Umean} - 3 * size) + "," + text(double{units.Umean} + 3 * size);
    Lines expected(49);
    const auto put = [&](double logit, const std::string& what) {
      expected[static_cast<std::size_t>(std::lround(24 - 8 * logit))] = what;
    };
    put(3, units.Uscale > 0 ? "(3)" : "(0)");
    put(-half, "---");
    put(0, "1");
    put(half, "---");
    put(-3, units.Uscale > 0 ? "(0)" : "(3)");
    EXPECT_EQ(Column(Rows(world.Rulers("1A", yardstick)), 2), Joined(expected, ",")) << units.Uscale;
    if (units.Uscale < 0) continue;
    put(2.875, "öfter");
    put(-0.125, "now and then");
    put(-2.875, "(0)");
    put(-3, "never");
    EXPECT_EQ(Column(Rows(world.Rulers("1A,SL", yardstick)), 2), Joined(expected, ",")) << units.Uscale;
  }
}

TEST(SubsetRulers, ListAndDrawEachSubset) {
  RulerWorld world;
  world.AddFacet("persons", {{"Ann", 1}, {"2", 0}, {"Cy", -1}});
  world.AddFacet("items", {{"Hit", 0}, {"Run", 0}});
  EXPECT_TRUE(world.Rulers("Y", "", true).empty());
  world.A.Subsets.SubsetCount = 2;
  world.A.Subsets.ElementSubsets.assign(5, {});
  world.A.Subsets.ElementSubsets[{1}] = {1};
  world.A.Subsets.ElementSubsets[{2}] = {2, 1};
  world.A.Subsets.ElementSubsets[{4}] = {1};
  world.A.Subsets.ElementSubsets[{5}] = {2};
  EXPECT_EQ(world.Rulers("Y", "", true), Lines{"There are 2 disconnected subsets identified in Table 7."});
  world.A.Settings.SubsetDetection = SubsetReport::Report;
  const Lines report = world.Rulers("Y", "0,1", true);
  const auto title = std::find(report.begin(), report.end(), "Table 6.0.0  Disjoint Subset Element Listing.");
  ASSERT_NE(title, report.end());
  EXPECT_EQ(Lines(title + 2, title + 8), (Lines{"Subset 1:", "  1 persons: 1 Ann, 2", "  2 items: 1 Hit",
                                                "Subset 2:", "  1 persons: 2", "  2 items: 2 Run"}));
  const auto second = std::find(report.begin(), report.end(), "Table 6.0.2  Disjoint Subset 2 Vertical Summary.");
  ASSERT_NE(second, report.end());
  EXPECT_EQ(Column(Rows(report), 1), "1,2,");
  EXPECT_EQ(Column(Rows(Lines(second, report.end())), 1), ",2,");
  EXPECT_EQ(Column(Rows(Lines(second, report.end())), 2), ",2,");
  EXPECT_TRUE(world.Rulers("N", "", true).empty());
}

}  // namespace
}  // namespace tessaly
