// Table 8 from its templates to its pictures.
#include "reports/category_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>

#include "fixture/design.h"
#include "reports/category_curves.h"
#include "reports/category_layout.h"
#include "reports/scale_structure.h"
#include "reports/table8_categories.h"
#include "unit/model/scale_bed.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// Lines of Table 8.
std::vector<std::string> Table8(const Analysis& analysis, const std::string& options) {
  const TestFolder folder;
  ReportWriter report(analysis.Settings);
  report.OpenReportFile(folder.Path() + "r.txt");
  ResponseKernel kernel(analysis.Scales, 80);
  RecordingConsole console;
  CategoryReport(options, analysis, kernel, report, console);
  report.CloseReportFile();
  std::ifstream file(folder.Path() + "r.txt", std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line.substr(0, line.size() - 1));
  return lines;
}

/// The first line that begins so.
std::string LineOf(const std::vector<std::string>& lines, std::string_view start) {
  for (const std::string& line : lines)
    if (line.starts_with(start)) return line;
  return {};
}

/// Persons who score as they may on all items of one scale: `counts` responses in each raw category.
Design Counted(const std::vector<int>& counts, const std::string& block) {
  Design design({12, 6}, "?,?,S");
  design.Blocks = "Rating scale=S," + block + "*\n";
  std::vector<int> left = counts;
  for (int at = 0; at < 72; ++at) {
    auto raw = static_cast<std::size_t>((at * 7 + at / 6) % static_cast<int>(counts.size()));
    while (left[raw] == 0) raw = (raw + 1) % counts.size();
    --left[raw];
    design.Ratings.push_back({{at / 6 + 1, at % 6 + 1}, static_cast<int>(raw)});
  }
  return design;
}

/// One reported rating scale with these thresholds, without data.
Analysis OneReported(const std::vector<float>& steps) {
  Analysis analysis;
  analysis.Scales = OneScale(steps);
  analysis.Scales.ScaleOrder = {kScale};
  analysis.Models.Statements.add({});
  analysis.Models.Statements[{0}].ModelField = {"R", "R", "1", ""};
  return analysis;
}

TEST(CategoryLayout, AllLinesAreOfOneWidthWithTheirBarsUnderEachOther) {
  for (int mask = 0; mask < 1 << 6; ++mask) {
    const auto bit = [&](int at) { return (mask >> at & 1) != 0; };
    const CategoryLayout layout = BuildCategoryLayout({bit(0), bit(1), bit(2), bit(3), bit(4) ? 7 : 0, bit(5)});
    const std::string& rule = layout.RuleTemplate;
    EXPECT_EQ(layout.ClosingRule.size(), rule.size());
    EXPECT_EQ(layout.ClosingRule.find("(Mean)") != std::string::npos, bit(1) && bit(2));
    std::vector<std::string> lines = layout.HeadLines;
    lines.insert(lines.end(), {layout.RowFmtFirst, layout.RowFmtMiddle, layout.RowFmtTop, layout.RowFmtNoData});
    for (const std::string& line : lines) {
      ASSERT_EQ(line.size(), rule.size());
      for (std::size_t at = 0; at < rule.size(); ++at) ASSERT_EQ(line[at] == box::kVertical, rule[at] == 'x') << at;
    }
  }
}

TEST(Table8, RowsByHand) {
  Analysis analysis = OneReported({0, -1, 1});
  analysis.Settings.Uscale = 2;
  const double counts[] = {10, 30, 60};
  const CategoryStatistics statistics[] = {
      {{-1, 10}, {-1.2, 10}, 3, 2}, {{0.5, 30}, {0.4, 30}, 99, 1}, {{0.25, 60}, {0.6, 60}, 5, 0}};
  for (std::int32_t k = 0; k < 3; ++k) {
    ScaleTables& scales = analysis.Scales;
    scales.CategoryCount(kScale, k) = scales.CategoryRawCount(kScale, k) = scales.CategoryExpected(kScale, k) =
        counts[k];
    scales.CategoryStatistics(kScale, k) = statistics[k];
    scales.CategoryInformation(kScale, k) = 0.25;
  }
  analysis.Scales.CategoryRawCount(kScale, 1) = 31;
  analysis.Scales.CategoryExpected(kScale, 2) = 61.25;
  const std::vector<std::string> lines = Table8(analysis, "N");
  EXPECT_TRUE(LineOf(lines, "|  0").starts_with("|  0      10        10   10%  10%| -2.00  -2.40  1.5 |          "));
  EXPECT_TRUE(
      LineOf(lines, "|  1").starts_with("|  1      31        30   30%  40%|  1.00    .80  9.9 | -2.00   4.00|"));
  const std::string top = LineOf(lines, "|  2");
  EXPECT_TRUE(top.starts_with("|  2      60        60   60% 100%|   .50*  1.20      |  2.00   4.00|")) << top;
  EXPECT_TRUE(top.ends_with("|100%|     -1.3 |")) << top;
}

TEST(Table8, ClosedUpCategoriesShowBothNumbersAndLabels) {
  const std::string block =
      "R4,G,O,,Deep\n0,none,,,x+y\n1,one\n2,\xC3\xBC"
      "ber zwei\n3,three\n";
  const Design design = Counted({20, 30, 0, 22}, block);
  const std::vector<std::string> lines = Table8(design.Run().A, "NB");
  EXPECT_EQ(LineOf(lines, " Rating"), " Rating (or partial credit) scale = S,R4,G,O");
  EXPECT_TRUE(LineOf(lines, "|  0   0      20       20   28%  28%|").ends_with("|   low    |100%| none (x+y)|"));
  // Not in use: its count and label alone, in the same columns. A two-byte letter takes one.
  const std::string unused = LineOf(lines, "|  2           0 ");
  EXPECT_EQ(unused,
            "|  2           0                    |                   |             |               |        |"
            "          |    | \xC3\xBC"
            "ber zwei |");
  EXPECT_NE(LineOf(lines, "|  3   2      22       22   31% 100%|"), "");
  EXPECT_EQ(LineOf(lines, "|  4"), "");  // never used, no label
  EXPECT_NE(LineOf(lines, "Scale structure for \"S\" (DEEP)"), "");
  EXPECT_NE(LineOf(lines, "  Mean:").find("-13-"), std::string::npos);
  const std::vector<std::string> left = Table8(design.Run({"Left-hand=Y"}).A, "N");
  EXPECT_TRUE(LineOf(left, "| none (x+y)|  0   0 ").ends_with("|   low  |   low    |100%|"));
  EXPECT_NE(LineOf(left, "|Category   |Category      Counts "), "");
}

TEST(Table8, KeptAndAnchoredCategories) {
  Design design = Counted({20, 30, 0, 22}, "R4,G,K\n0,no\n1,,-0.5,A\n4,,1.25,A\n");
  design.Settings += "Uscale=2\n";
  const std::vector<std::string> lines = Table8(design.Run().A, "N");
  const std::size_t thresholds = LineOf(lines, "|Score").find("Measure  S.E.");
  ASSERT_NE(thresholds, std::string::npos);
  const auto cells = [&](const char* start) { return LineOf(lines, start).substr(thresholds, 13); };
  EXPECT_EQ(cells("|  1 ").substr(0, 8), "  -.50A ");
  EXPECT_EQ(cells("|  2 "), "infin.       ");
  EXPECT_EQ(cells("|  4 "), "  1.25A      ");
  const std::string kept = LineOf(lines, "|  2       0         0    0%");
  EXPECT_NE(kept.find("|        |"), std::string::npos) << kept;
  EXPECT_NE(kept.find("|  0%|"), std::string::npos) << kept;
  // An anchored threshold shows in a scale of one step too.
  const std::vector<std::string> one = Table8(Counted({30, 42}, "R1,G,O\n1,,0.5,A\n").Run().A, "NBC");
  EXPECT_NE(LineOf(one, "|  1 ").find("|   .50A      |("), std::string::npos) << LineOf(one, "|  1 ");
  EXPECT_EQ(one.back(), "+" + std::string(one.back().size() - 2, '-') + "+");
}

TEST(Table8, DecimalsOfWeightsResidualsAndModelsOfCounts) {
  Design design = SimulatedDesign({14, 6}, 3, 5);
  EXPECT_EQ(LineOf(Table8(design.Run().A, "N"), "|Score").find("Residual"), std::string::npos);
  const std::vector<std::string> early = Table8(design.Run({"Iterations=2"}).A, "N");
  EXPECT_NE(LineOf(early, "|Score").find("| Residual |"), std::string::npos);
  const auto total = [&] { return LineOf(Table8(design.Run().A, "N"), "|  3").substr(5, 8); };
  EXPECT_EQ(total().find('.'), std::string::npos);
  design.Ratings[3].Replication = 0.5;
  EXPECT_NE(total().find('.'), std::string::npos);
  design.Models = "?,?,B3";
  std::vector<std::string> lines = Table8(design.Run().A, "NBC");
  EXPECT_EQ(lines.back(), "Binomial trials discrimination:  1.00 Anchored");
  EXPECT_EQ(LineOf(lines, "|Score").size(), 54U);
  design.Blocks = "Rating scale=T,P\n0,,1.5\n*\n";
  design.Models = "?,?,T";
  lines = Table8(design.Run().A, "C");
  EXPECT_TRUE(lines.back().starts_with("Poisson discrimination: ")) << lines.back();
  EXPECT_NE(lines.back().find(" S.E. ."), std::string::npos) << lines.back();
}

TEST(Table8, OptionsChoosePartsAndScales) {
  const Analysis analysis = SimulatedDesign({12, 3}, 2, 9, 0, 2).Run().A;
  ASSERT_EQ(analysis.Scales.ScaleOrder.size(), 3U);
  const auto tables = [&](const std::string& options) {
    std::string found;
    for (const std::string& line : Table8(analysis, options)) {
      if (line.starts_with("Table 8.")) found += line.substr(8, 1);
      if (line.starts_with("|Score")) found += 'N';
      if (line.starts_with("Scale structure")) found += 'B';
      if (line.starts_with("Probability Curves")) found += 'C';
    }
    return found;
  };
  EXPECT_EQ(tables("NBC"), "1NBC2NBC3NBC");
  EXPECT_EQ(tables("B+2,"), "2B");
  EXPECT_EQ(tables("CN+3,1"), "1NC3NC");
  for (const char* nothing : {"", "+1,", "XYZ", "N+", "N+,,,", "N+999999999999,", "N+12,", "N+-1,0,"})
    EXPECT_EQ(tables(nothing), "") << nothing;
}

TEST(ScaleStructure, BarsByHand) {
  ReportedScale scale;
  scale.Top = 3;
  scale.RawCategory = {8, 9, 10, 11};
  const MeasureAxis axis{-2, 2, 1, 4, 10};
  // AtCategory, peak, AtHalf, Thurstone, middle, modal.
  std::vector<CategoryMeasure> places = {{-1.5F, 0, 0, 0, -1.3F, true, 0},
                                         {-0.5F, 0, -1, -0.9F, -0.4F, false, 0},
                                         {0.5F, 0, 0, 0.1F, 0.5F, true, -0.5F},
                                         {1.5F, 0, 1, 0.9F, 1.3F, true, 2}};
  const std::vector<std::string> expected = {"",
                                             "Scale structure",
                                             "",
                                             "Measr:-2.0      -1.0       0.0       1.0       2.0",
                                             "        +         +         +         +         + ",
                                             "  Mode:<8-----(^)-----810--------^------(^)---10->",
                                             "",
                                             "Median:<8-----(^)-89----^---910--^-1011-(^)----11>",
                                             "",
                                             "  Mean:<8---(^)--89----^---910---^--1011--(^)--11>",
                                             "        +         +         +         +         + ",
                                             "Measr:-2.0      -1.0       0.0       1.0       2.0"};
  EXPECT_EQ(ScaleStructure(scale, places, axis), expected);
  // User units that run the other way turn the picture round.
  for (CategoryMeasure& place : places) {
    place.AtCategory *= -1;
    place.AtHalf *= -1;
  }
  EXPECT_EQ(ScaleStructure(scale, places, axis)[9], "  Mean:<11--(^)-1110---^--109----^---98---(^)---8>");
}

TEST(CategoryCurves, SymmetricThresholdsGiveMirroredPlots) {
  const ScaleTables scales = OneScale({0, -1, 1});
  ResponseKernel kernel(scales, 80);
  ReportedScale scale;
  scale.Top = 2;
  scale.RawCategory = {7, 8, 9};
  const MeasureAxis axis{-30, 30, 10, 6, 10};
  const auto plots = [&](bool crossTicks) {
    std::vector<std::string> lines = CategoryCurves(scale, axis, 10, crossTicks, kernel);
    for (std::string& line : lines) line = ToTextBox(line);
    return lines;
  };
  const std::vector<std::string> lines = plots(true);
  const std::string numbers = "     -30.0     -20.0     -10.0       0.0      10.0      20.0      30.0";
  const std::string rule = "       ++---------+---------+---------+---------+---------+---------++";
  ASSERT_EQ(lines.size(), 50U);
  EXPECT_EQ(std::vector(lines.begin(), lines.begin() + 3),
            (std::vector<std::string>{"Probability Curves", numbers, rule}));
  EXPECT_EQ(plots(false)[2], "       +" + std::string(61, '-') + "+");
  constexpr std::size_t kTop = 3;
  std::string side;
  for (std::size_t row = 0; row <= 20; ++row) {
    const std::string& line = lines[kTop + row];
    side += line[5];
    std::string mirrored(line.rbegin() + 2, line.rend() - 9);
    for (char& c : mirrored) c = c == '7' ? '9' : c == '9' ? '7' : c;
    EXPECT_EQ(line.substr(9, 59), mirrored) << row;
  }
  EXPECT_EQ(side, "1    Probability    0");
  // At 0 the middle category has 1 / (1 + 2 / e) = 0.58, the others 0.21 each.
  constexpr std::size_t kMiddle = 8 + 30;
  EXPECT_EQ(lines[kTop + 20 - 12][kMiddle], '8');
  EXPECT_EQ(lines[kTop + 20 - 4][kMiddle], '*');
  // At the upper threshold, one logit up, the middle and the top category have 1 / (2 + exp -2) = 0.47.
  EXPECT_EQ(lines[kTop + 20 - 9][kMiddle + 10], '*');
  // The ogive has 16 rows, with the middle category half way up.
  constexpr std::size_t kOgiveTop = kTop + 27;
  EXPECT_EQ(lines[27], "Expected Score Ogive (Model ICC)");
  EXPECT_EQ(lines[kOgiveTop].substr(0, 8), "     9 |");
  EXPECT_EQ(lines[kOgiveTop + 8].substr(0, 8), "     8 |");
  EXPECT_EQ(lines[kOgiveTop + 8][kMiddle], '8');
  EXPECT_EQ(lines[kOgiveTop + 16].substr(0, 8), "     7 |");
}

TEST(Table8, AbsurdScalesAndUnitsEnd) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  std::vector<std::vector<float>> scales = {{0, NAN, 1}, {0, 1e30F, -1e30F, 3e38F}, {0, kInfinity, -kInfinity}, {0}};
  scales.emplace_back(256, 0.0F);
  for (std::size_t k = 0; k < 256; ++k) scales.back()[k] = static_cast<float>(k * 97 % 256) - 128;
  for (const std::vector<float>& steps : scales) {
    Analysis analysis = OneReported(steps);
    for (std::int32_t k = 0; k < static_cast<std::int32_t>(steps.size()); ++k)
      analysis.Scales.CategoryCount(kScale, k) = analysis.Scales.CategoryRawCount(kScale, k) = k % 3 == 1 ? 1e30 : k;
    for (const float uscale : {1.0F, -1.0F, 1e30F, 3e38F, 1e-30F, 1e-38F}) {
      analysis.Settings.Uscale = uscale;
      analysis.Settings.Udecimals = 9;
      const std::vector<std::string> lines = Table8(analysis, "NBC");
      EXPECT_GT(lines.size(), 8U);
      const std::size_t width = LineOf(lines, "|Score").size();
      for (const std::string& line : lines) {
        EXPECT_LT(line.size(), 130U) << line;
        EXPECT_TRUE(!line.starts_with("|") || line.size() == width) << line;
      }
    }
  }
}

}  // namespace
}  // namespace tessaly
