#include "reports/measurement_layout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fixture/design.h"
#include "reports/box_line.h"

namespace tessaly {
namespace {

/// The report columns of a template in which every free field is empty.
std::size_t Width(std::string_view rowFormat) {
  return static_cast<std::size_t>(std::count_if(rowFormat.begin(), rowFormat.end(), [](char c) { return c != '&'; }));
}

TEST(MeasurementLayout, AllLinesAreOfOneWidthWithTheirRulesUnderEachOther) {
  for (int mask = 0; mask < 1 << 9; ++mask) {
    MeasurementColumns columns;
    const auto bit = [&](int at) { return (mask >> at & 1) != 0; };
    columns.Displacement = bit(0);
    columns.Correlation = static_cast<CorrelationColumns>(mask >> 1 & 3);
    columns.InterRater = bit(3);
    columns.Group = bit(4);
    columns.Weight = bit(5);
    columns.LeftHand = bit(6);
    columns.TotalScore = columns.Positive = bit(7);
    columns.FairMean = columns.RealSE = bit(8);
    for (const std::string head : {"Nu Persons", "Number of a rather long facet"}) {
      const MeasurementLayout layout = BuildMeasurementLayout(columns, head, {});
      const std::size_t width = layout.RuleTemplate.size();
      ASSERT_EQ(layout.HeadLines.size(), 2U);
      EXPECT_EQ(static_cast<std::size_t>(layout.LabelWidth), std::max<std::size_t>(head.size(), 20));
      for (const std::string& line : layout.HeadLines) ASSERT_EQ(line.size(), width);
      for (const std::string* row :
           {&layout.RowFmtNormal, &layout.RowFmtExtreme, &layout.RowFmtNonActive, &layout.RowFmtSummary})
        ASSERT_EQ(Width(*row), width) << ToTextBox(*row);
      for (std::size_t at = 0; at < width; ++at)
        ASSERT_EQ(layout.RuleTemplate[at] == 'x', layout.HeadLines[1][at] == box::kVertical) << at;
      EXPECT_EQ(layout.HeadLines[1].find(head),
                columns.LeftHand ? 2 : width - static_cast<std::size_t>(layout.LabelWidth) - 1);
    }
  }
}

TEST(MeasurementLayout, WordsOfTheHeadingsFollowSettings) {
  MeasurementColumns columns;
  const auto heading = [&] { return ToTextBox(BuildMeasurementLayout(columns, "Num Judges", {}).HeadLines[0]); };
  const std::string blanks(20, ' ');
  EXPECT_EQ(heading(),
            "|  Total   Total   Obsvd  Fair(M)|   -    Model | Infit      Outfit    |Estim.|" + blanks + " |");
  columns = {false, false, true, true};
  EXPECT_EQ(heading(),
            "|  Obsvd   Obsvd   Obsvd  Fair(Z)|   +     Real | Infit      Outfit    |Estim.|" + blanks + " |");
}

/// The first line of a table of the report that holds `cell`.
std::string RowOf(const FinishedAnalysis& run, const std::string& table, const std::string& cell) {
  const std::size_t start = run.Report.find("\nTable " + table);
  const std::size_t at = run.Report.find(cell, start);
  if (start == std::string::npos || at == std::string::npos) return {};
  const std::size_t line = run.Report.rfind('\n', at) + 1;
  return run.Report.substr(line, run.Report.find('\r', at) - line);
}

TEST(Table7, RowsShowWhatTheirElementsAre) {
  Design design = SimulatedDesign({12, 6}, 1, 3, 0);
  for (Rating& rating : design.Ratings) {
    if (rating.Elements[0] == 1) rating.Response = 1;
    if (rating.Elements[0] == 2) rating.Response = 0;
  }
  design.FacetFields[1] = ",A";
  design.Field(2, 1) = ",3.25";
  design.Field(2, 2) = ",-1,,0.5";
  const FinishedAnalysis run = design.Run({"Arrange=2mN,N"});
  EXPECT_EQ(RowOf(run, "7.1.1", "1 Element 1 ").substr(0, 19), "|     5.5     5.5  ");
  EXPECT_NE(RowOf(run, "7.1.1", "1 Element 1 ").find(")|Maximum               |      |"), std::string::npos);
  EXPECT_NE(RowOf(run, "7.1.1", "2 Element 2 ").find(")|Minimum               |      |"), std::string::npos);
  const std::string anchored = RowOf(run, "7.2.1", "1 Element 1 ");
  EXPECT_EQ(anchored[33], 'A');
  EXPECT_NE(anchored.find("A   3.25 "), std::string::npos);
  EXPECT_EQ(RowOf(run, "7.2.1", "3 Element 3 ")[33], '|');
  // Anchored far off its data: a column tells by how much, another one the weights.
  EXPECT_TRUE(anchored.ends_with("|  1.00 | 1 Element 1         |")) << anchored;
  EXPECT_TRUE(RowOf(run, "7.2.1", "2 Element 2 ").ends_with("|   .50 | 2 Element 2         |"));
  EXPECT_NE(RowOf(run, "7.2.1", " N Facet 2").find("| Displ.| PtMea PtExp | Weight|"), std::string::npos);
  EXPECT_EQ(RowOf(run, "7.1.1", " Nu Facet 1").find("Displ."), std::string::npos);
  // The item for facet 2 is for it alone; each table ends with a plain rule as wide as its others.
  EXPECT_TRUE(run.Reports("Table 7.1.1  Facet 1 Measurement Report  (arranged by N)."));
  EXPECT_TRUE(run.Reports("Table 7.2.1  Facet 2 Measurement Report  (arranged by 2mN)."));
  EXPECT_TRUE(run.Reports("Table 7.2.2  Facet 2 Measurement Report  (arranged by N)."));
  EXPECT_FALSE(run.Reports("Table 7.1.2"));
  EXPECT_TRUE(run.Reports(std::string(anchored.size(), '-') + "\r\n"));
  EXPECT_LT(run.Report.find(RowOf(run, "7.2.1", "1 Element 1 ")), run.Report.find(RowOf(run, "7.2.1", "2 Element 2 ")));
}

TEST(Table7, ElementsWithoutDataAndFacetsOfOne) {
  Design design = SimulatedDesign({9, 5, 1}, 1, 2, 0);
  design.Counts[0] = 11;
  design.ElementFields[0].resize(11);
  const FinishedAnalysis run = design.Run({"Omit=N"});
  EXPECT_EQ(RowOf(run, "7.1.1", "10 Element 10"), "");  // not observed at all: in no table
  EXPECT_TRUE(run.Reports("Table 7.3.1  Facet 3 Measurement Report."));
  EXPECT_FALSE(run.Reports("Table 7.3.2"));
  const FinishedAnalysis repeated = design.Run({"Juxtapose=4", "Left-hand=Y", "Arrange=N", "Tables=0000001"});
  const std::string head = "\r\n| Nu Facet 1";
  std::size_t headings = 0;
  for (std::size_t at = 0; (at = repeated.Report.find(head, at)) != std::string::npos; ++at) ++headings;
  EXPECT_EQ(headings, 3U);  // before rows 1, 5 and 9
  EXPECT_NE(RowOf(repeated, "7.1.1", "\n|  3 Element 3 "), "");
}

}  // namespace
}  // namespace tessaly
