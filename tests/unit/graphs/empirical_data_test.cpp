#include "graphs/empirical_data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include "estimate/prepare_scales.h"
#include "estimate/scale_order.h"
#include "unit/output/stored_data.h"

namespace tessaly {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// Numbers by what was counted: item, category or name of the sum, bin.
using Tally = std::map<std::tuple<int, int, int>, double>;
constexpr int kCount = -1;
constexpr int kScore = -2;

// Items are scales of their own. Categories are 2, 3, 4 in the data.
TEST(EmpiricalData, CountsWhatWasObserved) {
  constexpr int kPersons = 40;
  constexpr int kItems = 3;
  std::mt19937 random(12);
  std::string lines;
  std::vector<std::array<int, kItems>> responses(kPersons);
  for (int person = 0; person < kPersons; ++person) {
    for (int item = 0; item < kItems; ++item) {
      int& response = responses[static_cast<std::size_t>(person)][static_cast<std::size_t>(item)];
      response = 2 + static_cast<int>(random() % 3);
      lines += BareText(person + 1) + "," + BareText(item + 1) + "," + BareText(response) + "\n";
    }
  }
  StoredData stored("Facets=2\nUscale=-10\nLabels=\n1,Persons\n1-40\n*\n2,Items\n1-3\n*\nModels=?,#,R4\n", lines);
  Analysis& a = stored.A;
  PrepareScales(a.Models, a.Settings, a.Scales);
  OrderScales(a.Fields, a.Elements, a.Models, a.Scales);
  for (const ScaleNumber scale : a.Scales.Scales.all()) {
    a.Scales.Scales[scale].ScaleTopCategory = a.Scales.Scales[scale].ScaleBottomRaw = 2;
    for (int raw = 0; raw <= 4; ++raw)
      a.Scales.CategoryOrdinal(scale, raw) = static_cast<std::int16_t>(std::max(raw - 2, -1));
  }
  std::uniform_real_distribution<float> spread(-2, 2);
  for (float& measure : a.Elements.ElementMeasure) measure = spread(random);
  a.Elements.ElementStatus[{3}] = ElementStatus::Maximum;
  a.Elements.ElementStatus[{4}] = ElementStatus::Unobserved;
  a.Elements.ElementMeasure[{5}] = std::numeric_limits<float>::quiet_NaN();
  a.Elements.ElementMeasure[{6}] = kInfinity;
  a.Elements.ElementMeasure[{7}] = -1e30F;

  User nobody;
  RunControl control(nobody);
  const float low = -3.5F;
  const float high = 3.7F;
  EmpiricalData data = CollectEmpiricalData(low, high, a, *stored.Store, control, stored.Said);

  Tally expected;
  for (int person = 1; person <= kPersons; ++person) {
    if (person == 4 || person == 5) continue;
    for (int item = 1; item <= kItems; ++item) {
      const float measure = a.Elements.ElementMeasure[{person}] - a.Elements.ElementMeasure[{kPersons + item}];
      const double bins = std::fmin(std::fmax(std::rint((double{measure} - double{low}) * 100), 0), 720);
      const int bin = static_cast<int>(bins) + 1;
      const int response = responses[static_cast<std::size_t>(person - 1)][static_cast<std::size_t>(item - 1)];
      ++expected[{item, response - 2, bin}];
      ++expected[{item, kCount, bin}];
      expected[{item, kScore, bin}] += response;
    }
  }
  Tally found;
  std::size_t longest = 0;
  for (int item = 0; item <= kItems + 1; ++item) {
    longest = std::max(longest, data.ScoreRows(item).size());
    for (const BinCount& row : data.ScoreRows(item)) {
      found[{item, kCount, row.Bin}] += row.Count;
      found[{item, kScore, row.Bin}] += row.ScoreSum;
      EXPECT_NEAR(double{data.MeasureOf(row.Bin)}, 10 * ((row.Bin - 1) * 0.01 + double{low}), 1e-4);
    }
    for (int k = 0; k <= 3; ++k)
      for (const BinCount& row : data.CategoryRows(item, k)) found[{item, k, row.Bin}] += row.Count;
  }
  EXPECT_EQ(found, expected);
  EXPECT_EQ(data.LongestScoreList(), static_cast<std::int32_t>(longest));
  // The runaways stand at the ends.
  EXPECT_FLOAT_EQ(data.Range().DataMin, -35);
  EXPECT_FLOAT_EQ(data.Range().DataMax, 37);

  // User units come and go without a trace.
  std::vector<float> measures;
  for (std::int32_t bin = 1; bin <= 721; ++bin) measures.push_back(data.MeasureOf(bin));
  float uscale = -10;
  for (const float next : {0.3F, 7.0F, -1e-3F, 1.1F, 10.0F}) {
    data.RescaleEmpirical(std::exchange(uscale, next), next);
    EXPECT_NEAR(double{data.Range().DataMax}, std::fabs(double{next}) * 3.7, 4e-6 * std::fabs(double{next}));
  }
  for (std::int32_t bin = 1; bin <= 721; ++bin)
    ASSERT_EQ(data.MeasureOf(bin), measures[static_cast<std::size_t>(bin - 1)]);
}

TEST(EmpiricalData, OneBinIsOneUnitLong) {
  EmpiricalData data({{5, 0, 3, 3}}, {0, 2}, MeasureBins(0, 1), 2);
  EXPECT_EQ(data.Range().DataMin, 0.08F);
  EXPECT_EQ(data.Range().DataMax, 1.08F);
  data.RescaleEmpirical(2, 6);
  EXPECT_FLOAT_EQ(data.Range().DataMax, 3.24F);
  EXPECT_EQ(EmpiricalData().Range().DataMax, 1);
}

TEST(EmpiricalData, HashTableAgainstTree) {
  std::mt19937 random(1);
  BinCounts counts;
  Tally expected;
  for (int i = 0; i < 30000; ++i) {
    const int list = static_cast<int>(random() % 300) * 7;
    const int bin = static_cast<int>(random() % 50) * 128;
    counts.Add(bin, list, i % 4);
    ++expected[{list, bin, kCount}];
    expected[{list, bin, kScore}] += i % 4;
  }
  const std::vector<BinCount> sorted = std::move(counts).Sorted();
  ASSERT_EQ(2 * sorted.size(), expected.size());
  auto at = expected.begin();
  for (const BinCount& row : sorted) {
    ASSERT_EQ(*at++, Tally::value_type({row.List, row.Bin, kScore}, row.ScoreSum));
    ASSERT_EQ(*at++, Tally::value_type({row.List, row.Bin, kCount}, row.Count));
  }
}

TEST(MeasureBins, WideAndEmptyRanges) {
  EXPECT_EQ(MeasureBins(0, 0).MeasureOf(1), -1);
  EXPECT_EQ(MeasureBins(0, 0).Count(), 201);
  EXPECT_EQ(MeasureBins(-kInfinity, kInfinity).Count(), 201);
  EXPECT_EQ(MeasureBins(-163.79F, 163.8F).Count(), 32760);
  const MeasureBins wide(-1e4F, 2e4F);
  EXPECT_EQ(wide.Count(), 32760);
  EXPECT_EQ(wide.BinOf(-1e4F), 1);
  EXPECT_EQ(wide.BinOf(2e4F), 32760);
  EXPECT_EQ(wide.BinOf(kInfinity), 32760);
  EXPECT_NEAR(wide.MeasureOf(32760), 2e4, 1e-6);
  EXPECT_NEAR(wide.MeasureOf(wide.BinOf(77)), 77, 0.5 * 3e4 / 32759);
}

}  // namespace
}  // namespace tessaly
