#include "output/graph_file.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/bytes.h"
#include "support/number_text.h"
#include "unit/output/stored_data.h"

namespace tessaly {
namespace {

struct GraphedScale {
  std::vector<float> Steps;
  /// Of the ordinals; empty for the same.
  std::vector<int> RawCategories;
  ModelType Type = ModelType::RatingScale;
};

/// Scales in the order of the reports; steps of binomial and Poisson scales are discriminations.
Analysis ScalesOf(const std::vector<GraphedScale>& graphed) {
  constexpr std::int32_t kCategories = 8;
  Analysis a;
  const auto count = static_cast<std::int32_t>(graphed.size());
  a.Scales.CategoryStep.Create(count, kCategories);
  a.Scales.CategoryAnchor.Create(count, kCategories);
  a.Scales.CategoryOrdinal.Create(count, kCategories);
  for (const GraphedScale& one : graphed) {
    Scale scale;
    scale.ScaleTopCategory = static_cast<std::int16_t>(one.Steps.size() - 1);
    ModelStatement statement;
    statement.ModelType = one.Type;
    scale.ScaleModel = a.Models.Statements.add(statement);
    const ScaleNumber number = a.Scales.Scales.add(scale);
    a.Scales.ScaleOrder.push_back(number);
    for (std::int32_t k = 0; k < kCategories; ++k)
      a.Scales.CategoryOrdinal(number, k) = static_cast<std::int16_t>(one.RawCategories.empty() ? k : -1);
    for (std::size_t k = 0; k < one.Steps.size(); ++k) {
      a.Scales.CategoryStep(number, static_cast<std::int32_t>(k)) = one.Steps[k];
      if (!one.RawCategories.empty())
        a.Scales.CategoryOrdinal(number, one.RawCategories[k]) = static_cast<std::int16_t>(k);
    }
  }
  a.Settings.CsvDelimiter = "\t";
  return a;
}

struct Graph {
  std::string Heading;
  std::vector<std::vector<double>> Rows;
};

Graph WriteGraph(const Analysis& a) {
  ResponseKernel kernel(a.Scales, a.Settings.HardwareExponent);
  const std::string text = TextWritten([&](TextOutput& file) { WriteGraphFile(4, a, kernel, file); });
  Graph graph;
  for (const std::string_view line : SplitAt(text, '\n')) {
    if (graph.Heading.empty()) {
      graph.Heading = line;
    } else if (!line.empty()) {
      graph.Rows.emplace_back();
      for (const std::string_view cell : SplitAt(line, '\t')) graph.Rows.back().push_back(LeadingNumber(cell));
    }
  }
  return graph;
}

TEST(GraphFile, TheGridIsInWholeUserUnits) {
  struct Case {
    float Umean, Uscale;
    std::size_t Points;
    double First, Second, Last;
  };
  // ln 9 is 2.197: of a dichotomy, expected scores are .1 and .9 there.
  for (const Case& c : {
           Case{0, 1, 996, -3, -3 + 6.0 / 996, 3},              // -3 to 3 in 6 steps of 166
           Case{50, 10, 996, -3, -3 + 60.0 / 996 / 10, 3},      // 28 to 72: 20 to 80 by 10
           Case{50, 5, 994, -2.8, -2.8 + 28.0 / 994 / 5, 2.8},  // 39 to 61: 36 to 64 by 4
           Case{50, -5, 994, 2.8, 2.8 - 28.0 / 994 / 5, -2.8},  // turned round
           Case{0.5F, 1, 1000, -2.5, -2.5 + 5.0 / 1000, 2.5},   // -2 to 3
       }) {
    Analysis a = ScalesOf({{{0, 0}, {}}});
    a.Settings.Umean = c.Umean;
    a.Settings.Uscale = c.Uscale;
    const Graph graph = WriteGraph(a);
    ASSERT_EQ(graph.Rows.size(), c.Points + 1) << c.Umean << " " << c.Uscale;
    EXPECT_NEAR(graph.Rows[0][1], c.First, 5.1e-5);
    EXPECT_NEAR(graph.Rows[1][1], c.Second, 5.1e-5);
    EXPECT_NEAR(graph.Rows.back()[1], c.Last, 5.1e-5);
    for (const std::vector<double>& row : graph.Rows) {
      const double p = 1 / (1 + std::exp(-row[1]));
      ASSERT_EQ(row.size(), 6U);
      EXPECT_NEAR(row[2], p, 1e-4);
      EXPECT_EQ(row[3], row[1] >= 0 ? 1 : 0) << row[1];
      EXPECT_NEAR(row[4], 1 - p, 1e-4);
      EXPECT_NEAR(row[5], p, 1e-4);
    }
  }
}

TEST(GraphFile, CurvesOfSeveralScales) {
  const Analysis a = ScalesOf(
      {{{0, -1, 1}, {1, 2, 4}}, {{0, -1, 0, -2, 1}, {}}, {{1, 1, 1, 1}, {}, ModelType::Binomial}, {{0, 0.5F}, {3, 5}}});
  const Graph graph = WriteGraph(a);
  EXPECT_EQ(graph.Heading, "Scale\tMeasure\tExpected\tExpCat\tProb:1\tProb:2\tProb:4\tProb:5\tProb:6");
  const std::size_t tops[] = {2, 4, 3, 1};
  const double lowest[] = {1, 0, 0, 3};
  const std::vector<double> raw[] = {{1, 2, 4}, {0, 1, 2, 3, 4}, {0, 1, 2, 3}, {3, 5}};
  const std::size_t perScale = graph.Rows.size() / 4;
  ASSERT_EQ(graph.Rows.size(), 4 * perScale);
  for (std::size_t i = 0; i < graph.Rows.size(); ++i) {
    const std::vector<double>& row = graph.Rows[i];
    const std::size_t scale = i / perScale;
    ASSERT_EQ(row.size(), 5 + tops[scale]);
    EXPECT_EQ(row[0], static_cast<double>(scale + 1));
    EXPECT_EQ(row[1], graph.Rows[i % perScale][1]);
    double sum = 0;
    double expected = lowest[scale];
    for (std::size_t k = 0; k <= tops[scale]; ++k) {
      sum += row[4 + k];
      expected += static_cast<double>(k) * row[4 + k];
    }
    EXPECT_NEAR(sum, 1, 3e-4);
    EXPECT_NEAR(row[2], expected, 6e-4);
    // Rounding shows at the halves only.
    const double ordinal = row[2] - lowest[scale];
    if (std::fabs(ordinal - std::floor(ordinal) - 0.5) > 1e-4) {
      EXPECT_EQ(row[3], raw[scale][static_cast<std::size_t>(std::floor(ordinal + 0.5))]) << i;
    }
    EXPECT_GE(row[2], i % perScale == 0 ? 0 : graph.Rows[i - 1][2]);
  }
  // All scales reach both ends of their categories.
  EXPECT_LT(graph.Rows[perScale][2], 0.1);
  EXPECT_GT(graph.Rows[2 * perScale - 1][2], 3.9);
  EXPECT_LT(graph.Rows[0][2], 1.1);
  EXPECT_GT(graph.Rows[perScale - 1][2], 2.9);
}

// Poisson counts run past the highest observed one.
TEST(GraphFile, CountsGoOnBehindTheTop) {
  const Graph graph = WriteGraph(ScalesOf({{{1, 1, 1, 1}, {}, ModelType::Poisson}}));
  const std::vector<double>& last = graph.Rows.back();
  ASSERT_EQ(last.size(), 8U);
  EXPECT_NEAR(last[2], std::exp(last[1]), 1e-3);
  EXPECT_GT(last[3], 3);
  EXPECT_EQ(last[3], std::floor(last[2] + 0.5));
}

TEST(GraphFile, FormsOfTheLines) {
  Analysis a = ScalesOf({{{0, 0}, {}}});
  const auto start = [&](std::size_t length) {
    ResponseKernel kernel(a.Scales, a.Settings.HardwareExponent);
    return TextWritten([&](TextOutput& file) { WriteGraphFile(4, a, kernel, file); }).substr(0, length);
  };
  const std::string row = "         1   -3.0000     .0474         0     .9526     .0474\n";
  const std::string heading = "     Scale   Measure  Expected    ExpCat    Prob:0    Prob:1\n";
  a.Settings.CsvDelimiter = " ";
  EXPECT_EQ(start(122), heading + row);
  a.Settings.HeadingLinesOption = false;
  EXPECT_EQ(start(61), row);
  a.Settings.HeadingLinesOption = true;
  a.Settings.CsvDelimiter = ",";
  a.Settings.QuoteMark = "\"";
  const std::string quoted =
      "\"Scale\",\"Measure\",\"Expected\",\"ExpCat\",\"Prob:0\",\"Prob:1\"\n1,-3.0000,.0474,0,.9526,.0474\n";
  EXPECT_EQ(start(quoted.size()), quoted);
  // Nothing to draw.
  a.Scales.ScaleOrder.clear();
  EXPECT_EQ(start(1000), "\"Scale\",\"Measure\",\"Expected\",\"ExpCat\"\n");
  a = ScalesOf({{{0, 0}, {}}});
  a.Settings.Umean = 1e16F;
  EXPECT_EQ(start(1000), "Scale\tMeasure\tExpected\tExpCat\tProb:0\tProb:1\n");
}

}  // namespace
}  // namespace tessaly
