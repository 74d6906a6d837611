#include "spec/keywords.h"

#include <gtest/gtest.h>

#include <set>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

TEST(Keywords, RecognisedByTheLongestOfTheirPrefixes) {
  const std::pair<const char*, const char*> cases[] = {
      // Each prefix of two letters and more, and a neighbour that it must not catch.
      {"BATCH", "Batch="},
      {"BA", "Barcharts="},
      {"bar", "Barcharts="},
      {"BAD", "Bias="},
      {"B", "Bias="},
      {"BE", "Beep="},
      {"BOX", "Boxshow="},
      {"BO", "Bias="},
      {"POI", "Pt-biserial="},
      {"PO", "Positive="},
      {"PT", "Pt-biserial="},
      {"G", "Pt-biserial="},
      {"P", "Positive="},
      {"NEW", "Newton="},
      {"NEG", "Negative="},
      {"NU", "Null="},
      {"NO", "Noncenter="},
      {"FAI", "Fair="},
      {"FA", "Facets="},
      {"REP", "Replication="},
      {"RES", "Residualfile="},
      {"YN", "Residualfile="},
      {"YA", "Yardstick="},
      {"RE", "Rating scale="},
      {"USO", "Usort="},
      {"USC", "Uscale="},
      {"US", "Unexpected="},
      {"UM", "Umean="},
      {"UD", "Udecimals="},
      {"UT", "UTF8sub="},
      {"UTF8S", "UTF8sub="},
      {"utf8-e", "UTF8sub="},
      {"utf8encoded", "UTF8encoded="},
      {"SC", "Scorefile="},
      {"SU", "Subsets="},
      {"SI", "Simulated="},
      {"SH", "Show unobserved="},
      {"ST", "Standard errors="},
      {"LE", "Left-hand="},
      {"LA", "Labels="},
      {"MI", "Missing="},
      {"MO", "Models="},
      {"HS", "HS="},
      {"HE", "Heading lines="},
      {"HL", "Heading lines="},
      {"HA", "Hardware="},
      {"GR", "Graphfile="},
      {"GL", "Glabel="},
      {"GX", "Pt-biserial="},
      {"AN", "Anchorfile="},
      {"AS", "ASCII="},
      {"AR", "Arrange="},
      {"CS", "CSV="},
      {"CE", "Center="},
      {"CO", "Convergence="},
      {"IN", "Inter-rater="},
      {"INT", "Inter-rater="},
      {"INV", "Invalid lines="},
      {"IT", "Iterations="},
      {"WH", "Whexact="},
      {"WR", "Write="},
      {"DV", "Dvalues="},
      {"DE", "Delements="},
      {"DA", "Data="},
      {"OM", "Omit-unobserved="},
      {"OU", "Output="},
      {"QM", "QM="},
      {"QU", "Query="},
      {"TO", "Totalscore="},
      {"T4", "T4MAX="},
      {"T3", "T3onscreen="},
      {"T8", "T8NBC="},
      {"TA", "Tables="},
      {"TI", "Title="},
      {"T", "Title="},
      {"ES", "Entered="},
      {"ESU", "Esubtotals="},
      {"EN", "Entered="},
      {"SEED", "Seed="},
      {"SE", "Standard errors="},
      {"K", "Keepzero="},
      {"J", "Juxtapose="},
      {"V", "Vertical="},
      {"X", "Xtreme="},
      {"Z", "Zscore="},
      {"non-center", "Noncenter="},
      {"Rating (or partial credit) scale", "Rating scale="},
  };
  std::set<std::string_view> met;
  for (const auto& [text, name] : cases) {
    ASSERT_NE(FindKeyword(text), nullptr) << text;
    EXPECT_EQ(FindKeyword(text)->Name, name) << text;
    met.insert(name);
  }
  EXPECT_EQ(met.size(), Keywords().size()) << "a keyword has no case";
  for (const char* text : {"", "3", "*", "?", " A", "\xC4"}) EXPECT_EQ(FindKeyword(text), nullptr) << text;
}

TEST(Keywords, EveryRowTellsTheUserWhatItDoes) {
  std::string_view before;
  for (const Keyword& keyword : Keywords()) {
    EXPECT_EQ(keyword.Name.back(), '=');
    EXPECT_FALSE(keyword.Values.empty() || keyword.Default.empty()) << keyword.Name;
    EXPECT_EQ(keyword.Help.back(), '.') << keyword.Name;
    EXPECT_LT(LowerAscii(before), LowerAscii(keyword.Name)) << "not in order";
    before = keyword.Name;
  }
}

TEST(Keywords, TheFirstOccurrenceStands) {
  const SpecRun run(
      WithTwoFacets("Iterations=5\nI=6 ; later\nNegative=1\nPositive=2\nNoncenter=2\nCenter=1Z\n"
                    "Omit=N\nShow=N\nKeepzero=9\nNull=8\nUmean=50\nUscale=10\nGlabel=1,1,a\nGlabel=1,2,b"));
  EXPECT_EQ(run.Error, "");
  EXPECT_EQ(run.A.Settings.IterationsLimit, 5);
  EXPECT_FALSE(run.A.Facets[{1}].FacetPositive);
  EXPECT_TRUE(run.A.Facets[{2}].FacetPositive);
  EXPECT_EQ(run.A.Facets[{1}].FacetCenter, Centering::Centered);
  EXPECT_FALSE(run.A.Settings.OmitUnobserved);
  EXPECT_EQ(run.A.Settings.NullElement, 9);
  EXPECT_EQ(run.A.Settings.Uscale, 10);
  EXPECT_EQ(run.A.GroupLabels.size(), 2U);
  EXPECT_EQ(run.Said.Messages.front(), "Duplicate specification ignored: I=6 ; later");
  EXPECT_EQ(run.A.SpecComments,
            (std::vector<std::string>{"I=6 ; later", "Positive=2", "Center=1Z", "Show=N", "Null=8"}));
}

TEST(Keywords, NamesOfOutputFiles) {
  const auto names = [](const SpecRun& run) {
    const Settings& s = run.A.Settings;
    return s.OutputFileName + "|" + s.AnchorFileName + "|" + s.ResidualFileName + "|" + s.GraphFileName + "|" +
           s.ScoreFileName + "|" + s.SimulatedFileName;
  };
  const SpecRun file(WithTwoFacets(
      "Output=report.txt,anchors.txt,,graph.txt\nAnchorfile=a.txt\nScorefile=s.txt,Tab\nSimulated=\nYni=y\nSeed=7"));
  EXPECT_EQ(names(file), "report.txt|anchors.txt|y|graph.txt|s.txt|");
  EXPECT_EQ(file.A.Settings.CsvDelimiter, "\t");
  EXPECT_EQ(file.A.Settings.Seed, 7u);
  const SpecRun commandLine(WithTwoFacets("Anchorfile=b.txt"), {"s", "o", "anchors.txt", "residuals.txt", "graph.txt"});
  EXPECT_EQ(names(commandLine), "o|anchors.txt|residuals.txt|graph.txt||");
}

TEST(Keywords, LinesWithoutKeyword) {
  const SpecRun run("Facets=2\n*\n1,Persons ; here\n");
  EXPECT_EQ(run.Blamed(), "1,Persons ; here | Error F1 in line 3: \"Specification=value\" expected");
  EXPECT_EQ(run.Said.Messages.back(), "Specification not understood: 1,Persons ; here");
}

}  // namespace
}  // namespace tessaly
