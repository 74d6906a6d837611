#include "reports/esubtotals_table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "fixture/analysis_fixture.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

TEST(EsubtotalsTable, TableOneHoldsTheBlock) {
  const FinishedAnalysis run = RunSpecification(
      "Facets=3\nEsubtotals=3,1,2\nDvalues=3,1\nEsub=1,2\nUTF8encoded=No\n"
      "Labels=\n1,P\n1-2\n*\n2,I\n1-2\n*\n3,R\n1\n*\nData=\n1,1-2,1,0\n2,1-2,0,1\n");
  EXPECT_TRUE(run.Finished());
  const std::string lines =
      "Dvalues = 3,1 ; fixed values for data facets\r\nEsubtotals for target facet by reference facet=\r\n"
      "1 = 2\r\n3 = 1, 2\r\n*\r\nNon-centered = 1\r\n";
  EXPECT_TRUE(run.Reports(lines)) << run.Report;
  EXPECT_TRUE(run.Reports("UTF8encoded = N\r\n"));
  const SpecRun again(WithTwoFacets("Esubtotals for target facet by reference facet= \n1 = 2, 1\n*"));
  EXPECT_EQ(EsubtotalsBlock(again.A.Settings.Esubtotals)[1], "1 = 2, 1");
}

TEST(EsubtotalsTable, OneLineForEachElement) {
  Analysis analysis;
  analysis.Facets = DefaultFacets(2);
  analysis.Elements.Create(3);
  analysis.Fields.Positions.add({{1}, {1}, true});
  analysis.Fields.Positions.add({{2}, {2}, true});
  ElementCrossReference references(3, 2, analysis.Fields);
  Observation observation;
  observation.Elements.resize(2);
  observation.Elements[1].CurrentElement = {3};
  for (const int first : {1, 2}) {
    observation.Elements[0].CurrentElement = {first};
    references.Add(observation);
  }
  const TestFolder folder;
  ReportWriter report(analysis.Settings);
  report.OpenReportFile(folder.Path() + "r.txt");
  WriteEsubtotals(references, analysis, report);
  report.CloseReportFile();
  std::ifstream file(folder.Path() + "r.txt", std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), " 1= 0, 3,\r\n 2= 0, 3,\r\n 3=-1, 0,\r\n");
}

}  // namespace
}  // namespace tessaly
