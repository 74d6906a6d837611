#include <gtest/gtest.h>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// Orientation or centering of three facets, a character each.
std::string Positive(const std::string& line) {
  const SpecRun run("Facets=3\n" + line);
  std::string signs;
  for (const Facet& facet : run.A.Facets) signs += facet.FacetPositive ? '+' : '-';
  return signs;
}

std::string Centered(const std::string& line) {
  const SpecRun run("Facets=3\n" + line);
  std::string letters;
  for (const Facet& facet : run.A.Facets)
    letters += facet.FacetCenter == Centering::NotCentered ? 'n' : facet.FacetCenter == Centering::Centered ? 'c' : 'z';
  return letters;
}

TEST(FacetKeywords, Lists) {
  EXPECT_EQ(Positive(""), "+--");
  EXPECT_EQ(Positive("Positive=2,3"), "-++");
  EXPECT_EQ(Positive("Positive=0"), "---");
  EXPECT_EQ(Positive("Positive=Yes"), "+++");
  EXPECT_EQ(Positive("Positive=n"), "---");
  EXPECT_EQ(Positive("Positive="), "---");
  EXPECT_EQ(Positive("Negative=3,,1"), "-+-");
  EXPECT_EQ(Positive("Negative=Y"), "---");
  EXPECT_EQ(Positive("Negative="), "+++");

  EXPECT_EQ(Centered(""), "ncc");
  EXPECT_EQ(Centered("Noncenter=2"), "cnc");
  EXPECT_EQ(Centered("Noncenter=0"), "ccc");
  EXPECT_EQ(Centered("Noncenter="), "ccc");
  EXPECT_EQ(Centered("Center=3z,1"), "cnz");
  EXPECT_EQ(Centered("Center="), "nnn");

  for (const char* list : {"4", "x", "1.5", "1,400"})
    EXPECT_EQ(SpecRun(std::string("Facets=3\nPositive=") + list).Error,
              "Error F2 in line 2: Number invalid or greater than 3");
}

TEST(FacetKeywords, AListBeforeFacetsCountsThem) {
  const SpecRun run("Noncenter=1,3\nFacets=3,5\n");
  EXPECT_EQ(run.A.FacetCount(), 3);
  EXPECT_EQ(run.A.Fields.DataFacetCount(), 5);
  EXPECT_EQ(run.A.Facets[{3}].FacetCenter, Centering::NotCentered);
  EXPECT_EQ(SpecRun("Positive=1\n").A.FacetCount(), 2);
  for (const char* line : {"Positive=1", "Negative=Y"})
    EXPECT_EQ(SpecRun(std::string(line) + "\nFacets=3\n").Blamed(),
              "Facets=3 | Error F8 in line 2: Facets= statement conflicts with prior facet commands");
  EXPECT_EQ(SpecRun("Center=256\n").Error, "Error F2 in line 1: Number invalid or greater than 0");
}

TEST(FacetKeywords, NumberOfFacetsAndColumns) {
  EXPECT_EQ(SpecRun("Facets=255\n").A.Fields.DataFacetCount(), 255);
  EXPECT_EQ(SpecRun("Facets=3,2\n").A.Fields.DataFacetCount(), 2);
  EXPECT_EQ(SpecRun("Facets=3,0\n").A.Fields.DataFacetCount(), 3);
  for (const char* value : {"", "0", "256", "2.5", "x", "3,256", "3,x"}) {
    const SpecRun run(std::string("Facets=") + value);
    EXPECT_EQ(run.Error.substr(0, 20), "Error F2 in line 1: ") << value;
    EXPECT_EQ(run.Said.Warnings.size(), 1U);
  }
}

TEST(Entered, ColumnsAndPositions) {
  const auto fields = [](const std::string& entered) { return SpecRun(WithTwoFacets(entered)).A.Fields; };
  const FieldMap skipped = fields("Entered=1,0,2,");
  EXPECT_EQ(skipped.DataFacetCount(), 3);
  EXPECT_EQ(skipped.ActiveFacetCount(), 2);
  EXPECT_EQ(skipped.Columns[{2}].ColumnPosition.value, 0);
  EXPECT_EQ(skipped.Columns[{3}].ColumnPosition.value, 2);
  EXPECT_EQ(skipped.Positions[{2}].PositionColumn.value, 3);
  EXPECT_FALSE(skipped.RepeatedFacet);
  const FieldMap repeated = fields("Entered=2,1,2");
  EXPECT_TRUE(repeated.RepeatedFacet);
  EXPECT_EQ(repeated.Positions[{3}].PositionFacet.value, 2);
  EXPECT_EQ(fields("Entered=,,").ActiveFacetCount(), 2);

  const FieldMap wide = SpecRun("Facets=2,3\nLabels=\n1,a\n1\n*\n").A.Fields;
  EXPECT_EQ(wide.ActiveFacetCount(), 2) << "the third column has no facet";
  EXPECT_EQ(wide.DataFacetCount(), 3);
  EXPECT_EQ(SpecRun("Facets=3,2\nLabels=\n1,a\n1\n*\n").A.Fields.ActiveFacetCount(), 2);
}

TEST(Entered, WarningsAndFailures) {
  EXPECT_EQ(SpecRun(WithTwoFacets("Entered=1,2,1")).Said.Warnings,
            (std::vector<std::string>{" Entered= has 3 facet positions. This must match Data=",
                                      " Entered= has 3 active facet positions. This must match Models="}));
  for (const char* list : {"3", "x", "1,2.5", "0,0"})
    EXPECT_EQ(SpecRun(WithTwoFacets(std::string("Entered=") + list)).Error,
              "Error F2 in line 2: Number invalid or greater than 2");
  EXPECT_EQ(SpecRun("Entered=1\n").Blamed(),
            "Entered=1 | Error F34 in line 1: Please specify Facets= before this specification");
}

TEST(Dvalues, EntriesReachTheirColumns) {
  const SpecRun run(WithTwoFacets("Dvalues=\n1,1-2\n2,1,3,2,\n*\nEntered=1,2"));
  EXPECT_EQ(run.Error, "");
  EXPECT_EQ(run.A.Fields.Columns[{1}].DvalueText, "1-2");
  EXPECT_EQ(run.A.Fields.Columns[{2}].DvalueSource.value, 1);
  EXPECT_EQ(run.A.Fields.Columns[{2}].DvalueStart, 3);
  EXPECT_EQ(run.A.Fields.Columns[{2}].DvalueLength, 2);
  EXPECT_EQ(run.A.Settings.DvaluesSpec, (std::vector<std::string>{"1,1-2", "2,1,3,2"}));

  const SpecRun lines(WithTwoFacets("Dvalues=1,$L\nDvalues=2,1,$g\nModels=X,?,D\nIterations=3"));
  EXPECT_EQ(lines.A.Fields.Columns[{2}].DvalueStart, -1);
  EXPECT_EQ(lines.A.Fields.Columns[{1}].DvalueText, "$L");
  EXPECT_TRUE(lines.A.Fields.Positions[{1}].PositionInUse) << "facet 2 is derived from it";
  EXPECT_EQ(lines.A.Settings.IterationsLimit, 3);
}

TEST(Dvalues, Failures) {
  const std::string form =
      ": Dvalues= must be facet, value e.g., 3,1-4 or facet, facet, start, length, e.g., 3,2,6,2, or ";
  for (const char* entry : {"3,1", "0,1", "x,1", "1,,2,3", "1", "1,2,3,4,5"})
    EXPECT_EQ(SpecRun(WithTwoFacets(std::string("Dvalues=*\n") + entry)).Blamed(),
              std::string(entry) + " | Error F54 in line 3" + form);
  for (const char* entry : {"1,1,2,3", "1,9,2,3", "1,2,0,3", "1,2,3,0", "1,2,x,3", "1,2,3"})
    EXPECT_EQ(SpecRun(WithTwoFacets(std::string("Dvalues=") + entry)).Blamed(),
              std::string("Dvalues=") + entry + " | Error F59 in line 2: Field start or length problem in Dvalues=");
  EXPECT_EQ(SpecRun("Facets=2,1\nDvalues=2,1\nLabels=\n1,a\n1\n*\n").Blamed(),
            "Dvalues=2,1 | Error F54 in line 2" + form);
  EXPECT_EQ(SpecRun(WithTwoFacets("Dvalues=1,2,1,1\n2,1,1,1")).Blamed(),
            "Dvalues=1,2,1,1 | Error F68 in line 2: Dvalues= facets refer to themselves");
  EXPECT_EQ(SpecRun(WithTwoFacets("Entered=1,0\nDvalues=1,2,$G")).Blamed(),
            "Dvalues=1,2,$G | Error F66 in line 3: Dvalues= references an undefined facet");
  EXPECT_EQ(SpecRun(WithTwoFacets("Models=X,X,D\nDvalues=1,2,1,1\n2,1,1,1")).Error, "") << "not in use";
  EXPECT_EQ(SpecRun("Dvalues=1,2\n").Error.substr(0, 9), "Error F34");
}

TEST(Delements, KindsOfReference) {
  const auto kinds = [](const std::string& value) {
    const SpecRun run("Facets=3\nDelements=" + value + "\nLabels=\n1,a\n1\n*\n");
    std::string text;
    for (const std::int32_t facet : {0, 1, 2, 3})
      text += std::string(run.A.Fields.FacetIdentifiers[{facet}].data(), 2) + " ";
    return text;
  };
  EXPECT_EQ(kinds(""), "N. N. N. N. ");
  EXPECT_EQ(kinds("labels"), "L. L. L. L. ");
  EXPECT_EQ(kinds("1n,L"), "L. N. L. L. ");
  EXPECT_EQ(kinds("NL,2LN,9L,2147483648N"), "NL NL LN NL ");
  const SpecRun odd(WithTwoFacets("Delements=2x,,1L"));
  EXPECT_EQ(odd.Said.Warnings,
            std::vector<std::string>{"Warning (17)! 2X in Delements=\"2X,,1L\" ignored, not N or L"});
  EXPECT_EQ(odd.A.Fields.FacetIdentifiers[{1}][0], 'L');
}

TEST(Esubtotals, TargetsAndReferences) {
  using Lists = decltype(Settings::Esubtotals);
  const auto lists = [](const std::string& lines) {
    const SpecRun run("Facets=3\n" + lines + "\nT4MAX=7\nLabels=\n1,a\n1\n*\n");
    EXPECT_EQ(run.Error, "");
    EXPECT_EQ(run.A.Settings.T4Max, 7) << lines;
    return run.A.Settings.Esubtotals;
  };
  EXPECT_EQ(lists("Esubtotals=\n1+1,3,1,3\n\n1=0,4,-1,x\nEsub=2,2\n3,1\n2,3,,1\n*"), (Lists{{2, {3, 1, 2}}, {3, {1}}}));
  EXPECT_EQ(lists("Esub=1,2\nEsub=3,1\nEsub=1,3"), (Lists{{1, {2, 3}}, {3, {1}}}));
  EXPECT_EQ(lists("Esub=\n1,2\nUnexpected=2"), (Lists{{1, {2}}})) << "another keyword ends a block";
  for (const char* entry : {"0,1", "4,1", "x,1", ",1", "-1,2"}) {
    const SpecRun run(WithTwoFacets(std::string("Esubtotals=\n") + entry));
    EXPECT_EQ(run.Blamed().substr(0, run.Blamed().find(':')), std::string(entry) + " | Error F54 in line 3") << entry;
  }
  EXPECT_EQ(SpecRun("Esubtotals=1,2\n").Error.substr(0, 9), "Error F34");
}

TEST(Glabel, GroupLabels) {
  const SpecRun run(WithTwoFacets("Glabel=\n1,2,Boys\n1,2,Girls\nGlabel=2,1,\"Long\"\n*\nGlabel=1,3,Third\nT4MAX=7"));
  EXPECT_EQ(run.Error, "");
  EXPECT_EQ(run.A.GroupLabels, (decltype(run.A.GroupLabels){{{1, 2}, "Boys"}, {{1, 3}, "Third"}, {{2, 1}, "Long"}}));
  EXPECT_EQ(run.A.Settings.T4Max, 7);
  const SpecRun early("Glabel=4,0,None\n" + WithTwoFacets(""));
  EXPECT_EQ(early.A.GroupLabels.size(), 1U) << "the number of facets is not known yet; 0 is no group";
  for (const char* entry : {"1", "1,2", "1,,x", ",1,x", "1,1,", "1,x,y", "0,1,x", "3,1,x", "1,32761,x"})
    EXPECT_EQ(SpecRun(WithTwoFacets(std::string("Glabel=") + entry)).Blamed(),
              std::string("Glabel=") + entry +
                  " | Error F65 in line 2: Format is: Glabel = facet number, group number, group label");
}

}  // namespace
}  // namespace tessaly
