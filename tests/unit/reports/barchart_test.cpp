#include "reports/barchart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

#include "reports/box_line.h"
#include "reports/facet_barcharts.h"
#include "support/bytes.h"

namespace tessaly {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();

std::vector<std::string> TextLines(std::vector<std::string> lines) {
  for (std::string& line : lines) line = ToTextBox(line);
  return lines;
}

TEST(Barchart, AxisRunsBetweenWholeNumbersInColumnsThatFit) {
  struct Case {
    double Lowest, Highest, Bottom, Top, ColumnsPerUnit;
    int Width;
  };
  for (const Case& c : {Case{0.25, 0.5, 0, 1, 80, 80}, Case{2, 2, 1, 3, 40, 80}, Case{-1.2, 0.7, -2, 1, 20, 60},
                        Case{0, 4, 0, 4, 20, 80}, Case{0.5, 7.5, 0, 8, 10, 80}, Case{-1, 8, -1, 8, 5, 45},
                        Case{-9.5, 9.5, -10, 10, 4, 80},  // 2.5 columns become 4
                        Case{3, 10.5, 3, 11, 10, 80},     // beyond 10, but not longer
                        Case{-3, 14, -10, 20, 2, 60}, Case{101, 250, 100, 250, 0.5, 75}, Case{0, 170, 0, 170, 0.25, 43},
                        Case{0, 1e6, 0, 1e6, 1.0 / 16384, 61}}) {
    const std::optional<BarchartAxis> axis = FitAxis({c.Lowest, c.Highest});
    ASSERT_TRUE(axis);
    EXPECT_EQ(std::pair(axis->Bottom, axis->Top), std::pair(c.Bottom, c.Top));
    EXPECT_EQ(axis->ColumnsPerUnit, c.ColumnsPerUnit) << c.Highest;
    EXPECT_EQ(axis->Width, c.Width) << c.Highest;
  }
}

TEST(Barchart, DrawsTalliesAxisAndScale) {
  // 3 values of 1 and 12 of 6 have mean 5 and variance 12 x 3 / 15^2 x 5^2 = 4. Two deviations above is off the axis.
  Barchart chart("Infit MnSq:", {-1, 8});
  for (int i = 0; i < 15; ++i) chart.Tally(i < 3 ? 1 : 6);
  EXPECT_EQ(TextLines(chart.Lines()),
            (std::vector<std::string>{"Infit MnSq:", "                                    1          ",
                                      "           3                        2          ",
                                      " +----+----Q----+----S----+----M----+----S----+",
                                      "-1    0    1    2    3    4    5    6    7    8        ", ""}));
}

TEST(Barchart, NumbersStandUnderTheirTicks) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> exponent(-1, 15);
  for (int trial = 0; trial < 2000; ++trial) {
    const double low = std::pow(10, exponent(random)) * (trial % 2 == 0 ? 1 : -1);
    const double high = low + std::pow(10, exponent(random)) / (trial % 3 + 1);
    if (high > 1e15) continue;
    Barchart chart("", {low, high});
    chart.Tally(low);
    const std::vector<std::string> lines = TextLines(chart.Lines());
    ASSERT_EQ(lines.size(), 5U);
    const std::string& axis = lines[2];
    const std::string& scale = lines[3];
    ASSERT_LE(axis.size(), 82U);
    ASSERT_EQ(scale.size(), axis.size() + 8);
    for (std::size_t at = 2; at < axis.size(); ++at) {
      if (axis[at] == '+') {
        ASSERT_TRUE(IsDigit(scale[at])) << low << " to " << high;
      }
    }
    std::ptrdiff_t numbers = 0;
    for (std::size_t at = 0; at < scale.size(); ++at)
      numbers += scale[at] == '-' || (IsDigit(scale[at]) && (at == 0 || scale[at - 1] == ' '));
    // The mark of the only value may hide a tick.
    const std::ptrdiff_t hidden = numbers - std::count(axis.begin() + 2, axis.end(), '+') - 1;
    ASSERT_TRUE(hidden == 0 || hidden == 1) << low << " to " << high << "\n" << axis << "\n" << scale;
  }
}

TEST(Barchart, WhatCannotBeDrawnIsLeftOut) {
  for (const auto& [low, high] :
       {std::pair{kInfinite, -kInfinite}, {-kInfinite, 1.0}, {1.0, kInfinite}, {-1e30, 1e30}, {1e300, 1e300}}) {
    Barchart chart("", {low, high});
    chart.Tally(0);
    EXPECT_TRUE(chart.Lines().empty()) << low << " to " << high;
  }
  BarchartRange range;
  range.Meet(std::nan(""));
  EXPECT_FALSE(FitAxis(range));
  range.Meet(1);
  range.Meet(std::nan(""));
  Barchart chart("", range);
  for (const double value : {std::nan(""), kInfinite, -kInfinite}) chart.Tally(value);
  EXPECT_TRUE(chart.Lines().empty());
  for (const double value : {1e300, -1e300, 1e30}) chart.Tally(value);
  EXPECT_EQ(chart.Lines().size(), 5U);
}

/// Two facets; the second reaches further than the first.
Analysis TwoFacets() {
  using S = ElementStatus;
  struct Row {
    S Status;
    float Measure, Count, AllCount, Infit, Outfit;
  };
  const Row rows[] = {{S::Active, 0.5F, 4, 6, 0.5F, 1},    {S::Maximum, 2.5F, 6, 7, 9, 9},
                      {S::OneDatum, 9, 1, 1, 9, 9},        {S::Anchored, 9, 0, 0, 9, 9},  // without observations
                      {S::Active, -3.5F, 20, 20, 1, 4.5F}, {S::Unmeasurable, 9, 1, 1, 9, 9}};
  Analysis analysis;
  analysis.Facets = DefaultFacets(2);
  analysis.Facets[{1}].FacetFirstElement = {1};
  analysis.Facets[{1}].FacetLastElement = {4};
  analysis.Facets[{2}].FacetFirstElement = {5};
  analysis.Facets[{2}].FacetLastElement = {6};
  analysis.Elements.Create(static_cast<std::int32_t>(std::size(rows)));
  ElementIndex e{1};
  for (const Row& row : rows) {
    analysis.Elements.ElementStatus[e] = row.Status;
    analysis.Elements.ElementMeasure[e] = row.Measure;
    analysis.Elements.ElementStats[e].ObservedCount = row.Count;
    analysis.Elements.ElementStats[e].AllCount = row.AllCount;
    analysis.Elements.Fit[e].InfitMeanSquare = row.Infit;
    analysis.Elements.Fit[e].OutfitMeanSquare = row.Outfit;
    ++e;
  }
  return analysis;
}

/// Label, number of elements (none of these tallies has two digits), first and last number of the scale.
using Chart = std::tuple<std::string, int, std::string, std::string>;

std::vector<Chart> Charts(const Analysis& analysis) {
  std::vector<Chart> charts;
  const std::vector<std::string> lines = FacetBarcharts({1}, analysis);
  for (std::size_t at = 0; at + 4 < lines.size(); at += 5) {
    int elements = 0;
    for (const char c : lines[at + 1]) elements += c == ' ' ? 0 : c - '0';
    const std::string_view scale = TrimBlanks(lines[at + 3]);
    charts.emplace_back(lines[at], elements, scale.substr(0, scale.find(' ')), scale.substr(scale.rfind(' ') + 1));
  }
  return charts;
}

TEST(FacetBarcharts, ShowTheirElementsOnTheScaleOfAllFacetsOrTheirOwn) {
  Analysis analysis = TwoFacets();
  EXPECT_EQ(Charts(analysis), (std::vector<Chart>{{"Logit:", 2, "-4", "3"},
                                                  {"Infit MnSq:", 1, "0", "5"},
                                                  {"Outfit MnSq:", 1, "0", "5"},
                                                  {"Infit ZStd:", 1, "-1", "1"},
                                                  {"Outfit ZStd:", 1, "-1", "1"}}));

  analysis.Settings.BarchartsOption = 2;
  analysis.Settings.Uscale = 2;
  analysis.Settings.Umean = 10;
  analysis.Settings.PtBiserial = 'I';
  std::vector<Chart> charts = Charts(analysis);
  ASSERT_EQ(charts.size(), 11U);
  EXPECT_EQ(charts[0], Chart("Measure:", 2, "0", "20"));  // 3 to 15: in tens
  EXPECT_EQ(std::get<0>(charts[1]), "S.E.:");
  EXPECT_EQ(charts[6], Chart("Count:", 3, "1", "7"));
  EXPECT_EQ(charts[10], Chart("PtBisI:", 3, "-1", "1"));
  analysis.Settings.TotalScore = false;
  analysis.Settings.PtBiserial = 'N';
  charts = Charts(analysis);
  EXPECT_EQ(charts.size(), 10U);
  EXPECT_EQ(charts[6], Chart("Count:", 3, "1", "6"));

  analysis.Settings.Uscale = 1e30F;
  EXPECT_EQ(std::get<0>(Charts(analysis)[0]), "S.E.:");
}

}  // namespace
}  // namespace tessaly
