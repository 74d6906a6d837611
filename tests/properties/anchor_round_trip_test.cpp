// An anchor file starts the next run where this one ended, and a settings file restores the settings.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <tuple>

#include "fixture/design.h"
#include "output/anchor_file.h"
#include "output/settings_lines.h"
#include "spec/keywords.h"
#include "support/bytes.h"
#include "support/number_text.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

constexpr int kDecimals = 6;

struct Source {
  std::string Specification;
  std::vector<NamedText> Files;
  std::vector<std::string> ExtraWords;
};

std::string AnchorText(const Source& source, FinishedAnalysis& run, const AnchorRequest& request = {}) {
  const TestFolder folder;
  for (const auto& [name, content] : source.Files) folder.Write(name, content);
  run.A.Settings.SpecFileName = folder.Write("spec.txt", source.Specification);
  const std::string path = folder.Path() + "anchors.txt";
  Console silent;
  TextOutput file(path);
  WriteAnchorFile(request, run.A, silent, file);
  file.Close();
  std::ifstream anchors(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(anchors), {});
}

std::string Printed(const Settings& settings, float logit, float mean) {
  return FormatSingle(mean + settings.Uscale * logit, 40, std::max(settings.Udecimals, kDecimals));
}

void ExpectSameFacets(const Analysis& a, const Analysis& b, bool anchored) {
  for (const FacetNumber facet : a.Facets.all()) {
    SCOPED_TRACE(facet.value);
    EXPECT_EQ(a.Facets[facet].FacetLabel, b.Facets[facet].FacetLabel);
    EXPECT_EQ(a.Facets[facet].FacetNullLabel, b.Facets[facet].FacetNullLabel);
    EXPECT_EQ(a.Facets[facet].FacetPriority, b.Facets[facet].FacetPriority);
    EXPECT_EQ(a.Facets[facet].FacetPositive, b.Facets[facet].FacetPositive);
    EXPECT_EQ(a.Facets[facet].FacetCenter, b.Facets[facet].FacetCenter);
    EXPECT_EQ(a.Facets[facet].HasFlag('N'), b.Facets[facet].HasFlag('N'));
    const char type = a.Facets[facet].FacetType();
    EXPECT_EQ(b.Facets[facet].FacetType(), anchored && type != 'D' ? 'A' : type);
  }
}

/// What `Labels=` says of the elements, and their measures as they would be printed.
void ExpectSameElements(const Analysis& a, const Analysis& b, bool anchored) {
  ASSERT_EQ(a.Elements.ElementCount(), b.Elements.ElementCount());
  for (const ElementIndex element : a.Elements.ElementNumber.all()) {
    SCOPED_TRACE(a.Elements.ElementLabel[element]);
    EXPECT_EQ(a.Elements.ElementNumber[element], b.Elements.ElementNumber[element]);
    EXPECT_EQ(a.Elements.ElementLabel[element], b.Elements.ElementLabel[element]);
    EXPECT_EQ(std::abs(a.Elements.ElementGroup[element]), std::abs(b.Elements.ElementGroup[element]));
    EXPECT_EQ(a.Elements.ElementStats[element].ElementWeight, b.Elements.ElementStats[element].ElementWeight);
    EXPECT_EQ(a.Elements.ElementStats[element].TargetElement, b.Elements.ElementStats[element].TargetElement);
    const ElementStatus status = a.Elements.ElementStatus[element];
    if (status == ElementStatus::Unobserved) {
      EXPECT_EQ(b.Elements.ElementStatus[element], status);
    }
    if (WithoutMeasure(status)) continue;
    EXPECT_EQ(b.Elements.ElementStatus[element], anchored ? ElementStatus::Anchored : status);
    if (anchored) {
      EXPECT_EQ(Printed(a.Settings, a.Elements.ElementMeasure[element], a.Settings.Umean),
                Printed(b.Settings, b.Elements.ElementMeasure[element], b.Settings.Umean));
    }
    EXPECT_NEAR(double{a.Elements.ElementMeasure[element]}, double{b.Elements.ElementMeasure[element]}, 0.001);
  }
}

/// The threshold of each raw category as it would be printed, or what it has in place of one; nothing for a category
/// that is not in use. The discrimination of a scale that has one.
std::map<int, std::string> Thresholds(const Analysis& a, ScaleNumber scale) {
  if (a.Models.Statements[a.Scales.Scales[scale].ScaleModel].ModelType != ModelType::RatingScale)
    return {{0, FormatSingle(a.Scales.CategoryStep(scale, 0), 40, kDecimals)}};
  std::map<int, std::string> thresholds;
  for (int raw = 0; raw <= a.Scales.TopCategory; ++raw) {
    const int ordinal = a.Scales.CategoryOrdinal(scale, raw);
    if (ordinal < 0 || ordinal > a.Scales.Scales[scale].ScaleTopCategory) continue;
    const bool kept = a.Scales.CategoryAnchor(scale, ordinal) == CategoryAnchor::KeptUnobserved;
    thresholds[raw] = kept           ? "kept"
                      : ordinal == 0 ? "bottom"
                                     : Printed(a.Settings, a.Scales.CategoryStep(scale, ordinal), 0);
  }
  return thresholds;
}

void ExpectSameScales(const Analysis& a, const Analysis& b) {
  ASSERT_EQ(a.Scales.ScaleOrder.size(), b.Scales.ScaleOrder.size());
  for (const ScaleNumber scale : b.Scales.ScaleOrder) {
    const RatingScaleDefinition& block =
        b.Models.Definitions[b.Models.Statements[b.Scales.Scales[scale].ScaleModel].ModelDefinition];
    SCOPED_TRACE(block.Name);
    const ScaleNumber before = a.Scales.ScaleOrder[static_cast<std::size_t>(std::atoi(block.Name.c_str() + 2))];
    EXPECT_EQ(Thresholds(a, before), Thresholds(b, scale));
    for (int raw = 0; raw <= a.Scales.TopCategory; ++raw)
      EXPECT_EQ(a.Scales.CategoryRawCount(before, raw), b.Scales.CategoryRawCount(scale, raw));
    const ModelStatement& statement = a.Models.Statements[a.Scales.Scales[before].ScaleModel];
    if (statement.ModelDefinition == kNoDefinition) continue;
    const RatingScaleDefinition& own = a.Models.Definitions[statement.ModelDefinition];
    EXPECT_EQ(own.Subtitle, block.Subtitle);
    EXPECT_EQ(own.Keep, block.Keep);
    for (std::size_t i = 0; i < own.Categories.size(); ++i) {
      const bool labelled = !own.Categories[i].Label.empty();
      EXPECT_TRUE(!labelled || own.Categories[i].Label == block.Categories[i].Label);
    }
  }
}

struct RoundTrip {
  FinishedAnalysis Run;
  FinishedAnalysis Again;
  std::string Anchors;
};

RoundTrip ExpectRoundTrip(const Source& source, const AnchorRequest& request = {}) {
  RoundTrip trip;
  trip.Run = RunSpecification(source.Specification, source.Files, source.ExtraWords);
  trip.Anchors = AnchorText(source, trip.Run, request);
  trip.Again = RunSpecification(trip.Anchors, source.Files);
  SCOPED_TRACE(trip.Anchors);
  EXPECT_TRUE(trip.Run.Finished() && trip.Again.Finished()) << trip.Run.Report << trip.Again.Report;
  if (!trip.Run.Finished() || !trip.Again.Finished()) return trip;
  const Analysis& a = trip.Run.A;
  const Analysis& b = trip.Again.A;
  ExpectSameFacets(a, b, request.FlagAsAnchors);
  ExpectSameElements(a, b, request.FlagAsAnchors);
  ExpectSameScales(a, b);
  EXPECT_EQ(a.GroupLabels, b.GroupLabels);
  EXPECT_EQ(a.Settings.DvaluesSpec, b.Settings.DvaluesSpec);
  EXPECT_EQ(a.Settings.Esubtotals, b.Settings.Esubtotals);
  EXPECT_EQ(a.Settings.Title, b.Settings.Title);
  EXPECT_EQ(a.Settings.LabelsBuild, b.Settings.LabelsBuild);
  EXPECT_EQ(a.Counters.ValidResponses, b.Counters.ValidResponses);
  return trip;
}

Source SourceOf(const Design& design) {
  return {design.Specification(), {{"data.txt", design.DataLines()}}, {}};
}

TEST(AnchorRoundTrip, AllKindsOfScalesComeBackWithExtremeElements) {
  int extremes = 0;
  for (const std::string units :
       {"", "Umean=500,100,3\n", "Umean=0,10,6\n", "Umean=-3,-.7\n", "Umean=.1,.3333333,4\n"}) {
    for (const unsigned seed : {1U, 2U}) {
      SCOPED_TRACE(units);
      std::vector<Design> designs = {
          SimulatedDesign({24, 7}, 1, seed, 0.2),    SimulatedDesign({14, 5, 3}, 3, seed, 0.3),
          SimulatedDesign({40, 4}, 2, seed, 0.1, 2), SimulatedDesign({16, 6}, 4, seed),
          SimulatedDesign({10, 5}, 6, seed),         SimulatedDesign({12, 4, 4}, 3, seed)};
      designs[3].Models = "?,?,Trials";
      designs[3].Blocks = "Rating scale=Trials,B4\n*\n";
      designs[4].Models = "?,?,P";
      designs[5].Models = "\nX,1-2,?,Own\n-?,?B,?B,Own,2\n99,?,?,Own";
      designs[5].Blocks = "Rating scale=Own,R3,Specific\n0,none\n3,all\n*\n";
      for (Design& design : designs) {
        design.Settings = units;
        const RoundTrip trip = ExpectRoundTrip(SourceOf(design), {.CurrentSettings = seed == 2});
        for (const ElementStatus status : trip.Run.A.Elements.ElementStatus)
          extremes += BelowActive(status) && !WithoutMeasure(status);
      }
    }
  }
  EXPECT_GT(extremes, 20);
}

/// Two scales with gaps: responses 1, 3, 4, 6 of each, kept and closed up.
Design GappedDesign() {
  Design design = SimulatedDesign({20, 6}, 3, 5);
  const int raw[] = {1, 3, 4, 6};
  for (Rating& rating : design.Ratings) rating.Response = raw[rating.Response];
  design.Models = "\n?,1-3,Kept\n?,4,Closed\n?,5,R8K\n?,6,R8";
  design.Blocks =
      "Rating scale=Kept,R9,G,Keep,,a subtitle\n1,\"one\",-4.5\n4,,,,4+14-19\n3,,,,3+14-16\n5,five\n-1,,,,X+20-99\n*\n"
      "Rating scale=closed,R9,S,O\n3,three,-20,A\n6,'six'\n*\n"
      "Rating scale=Never named,R5,S,K,,other\n2,b,1.5,A,7+8\n0,a,,,1-3\n*\n";
  design.Settings = std::string(kTight) + "Umean=50,10,6\n";
  design.Ratings[0].Response = 14;
  design.Ratings[1].Response = 17;
  return design;
}

TEST(AnchorRoundTrip, KeptClosedAnchoredAndRecodedCategoriesComeBack) {
  for (const bool flag : {true, false}) {
    Design design = GappedDesign();
    if (flag) {
      // A category that is only there because it is anchored: estimates need not settle.
      design.Settings += "Iterations=40\n";
      design.Blocks.insert(design.Blocks.find("6,'six'"), "8,eight,5,A\n");
    }
    const FinishedAnalysis again = ExpectRoundTrip(SourceOf(design), {.FlagAsAnchors = flag}).Again;
    EXPECT_EQ(Thresholds(again.A, again.A.Scales.ScaleOrder[0])[2], "kept");
    EXPECT_EQ(Thresholds(again.A, again.A.Scales.ScaleOrder[1]).contains(8), flag);
    EXPECT_EQ(again.A.Counters.InvalidCount, 0);
    const RatingScaleDefinition& unused = again.A.Models.Definitions[again.A.Models.Definitions.last()];
    EXPECT_EQ(unused.Name, "Never named");
    EXPECT_EQ(unused.Code + unused.Subtitle, "R5other");
    EXPECT_TRUE(unused.Specific && unused.Keep && unused.Recodes.size() == 3);
  }
}

TEST(AnchorRoundTrip, WhatLabelsSaysOfElementsComesBack) {
  for (const std::string type : {"A", "G", "X,2", "XN", "D", ""}) {
    for (const bool flag : {true, false}) {
      // With starting values the facets of the first priority have other partners.
      if (type == "X,2" && !flag) continue;
      SCOPED_TRACE(type + (flag ? " flagged" : ""));
      Design design = SimulatedDesign({16, 6, 4}, 2, 3, 0.1, 2);
      design.FacetFields = {"", "," + type, ",D"};
      design.Models = "?,-#B,?B,Scale";
      design.Settings = std::string(kTight) + "Umean=0,10,4\n";
      design.Blocks =
          "Rating scale=Scale,R2,S\n*\nGlabel=\n1,2,second\n2,1,first\n*\nEsubtotals=\n1=2,3\n3,1\n*\n"
          "Dvalues=\n3,1,9,1\n*\n";
      design.Field(2, 1) = ",1,1";
      design.Field(2, 2) = ",-3,1,2.5";
      design.Field(2, 3) = ",,4";
      design.Field(1, 2) = ",,2,.3333333";
      design.Field(1, 3) = ",,,,4";
      design.Field(2, 5) = ",,,,6";
      design.Field(1, 16) = ",7";
      std::erase_if(design.Ratings, [](const Rating& rating) { return rating.Elements[0] == 16; });
      for (Rating& rating : design.Ratings) rating.Elements.resize(2);
      std::string specification = design.Specification();
      specification.replace(specification.find("Labels="), 7, "Labels=Nobuild");
      specification.insert(specification.find("1,Element 1"), "0,nobody\n20,\"Quoted\",,,1,2\n");
      ExpectRoundTrip({specification, {{"data.txt", design.DataLines() + "20,1,2\n1,0,2\n2,0,0\n"}}, {}},
                      {.FlagAsAnchors = flag});
    }
  }
}

TEST(AnchorRoundTrip, TheModelHoldsForOtherRunsToo) {
  // What was fixed stays fixed where values are starting values.
  Design trials = SimulatedDesign({16, 6}, 4, 1);
  trials.Models = "?,?,B4";
  trials.Settings = kTight;
  ExpectRoundTrip(SourceOf(trials), {.FlagAsAnchors = false});

  // An element without data has no scale of its own yet.
  const Design whole = SimulatedDesign({20, 5}, 2, 2, 0, 2);
  Design part = whole;
  std::erase_if(part.Ratings, [](const Rating& rating) { return rating.Elements[1] == 5; });
  const std::string anchors = ExpectRoundTrip(SourceOf(part)).Anchors;
  const FinishedAnalysis later = RunSpecification(anchors, SourceOf(whole).Files);
  EXPECT_EQ(later.A.Counters.ValidResponses, static_cast<std::int64_t>(whole.Ratings.size()));
  EXPECT_EQ(later.A.Scales.ScaleOrder.size(), 5U);
  EXPECT_EQ(later.Status(2, 5), ElementStatus::Active);
}

TEST(AnchorRoundTrip, SubsetsAreMarkedAndMeasuresThatCannotBeReadAreLeftOut) {
  Design design = SimulatedDesign({12, 6}, 2, 1, 0);
  std::erase_if(design.Ratings, [](const Rating& r) { return (r.Elements[0] <= 6) != (r.Elements[1] <= 3); });
  for (Rating& rating : design.Ratings)
    if (rating.Elements[0] == 1) rating.Response = 2;
  FinishedAnalysis run = design.Run();
  ASSERT_EQ(run.Status(1, 1), ElementStatus::Maximum);
  run.A.Settings.HardwareExponent = static_cast<float>(run.Measure(1, 1)) - 0.1F;
  const std::string anchors = AnchorText(SourceOf(design), run);
  EXPECT_NE(anchors.find("\n 1=Element 1 ; in subset: 1\r"), std::string::npos) << anchors;
  EXPECT_NE(anchors.find(" ; in subset: 2\r\n*"), std::string::npos);
  const FinishedAnalysis again = RunSpecification(anchors, SourceOf(design).Files);
  ASSERT_TRUE(again.Finished()) << again.Fatal;
  EXPECT_NEAR(again.Measure(1, 1), run.Measure(1, 1), 0.001);
}

constexpr std::string_view kMixedSource =
    "; a comment\nTitle=A title, and more\n%settings.inc\nOutput=report.txt,anchors.txt\n  anchor=/dev/null\n"
    "Omit=No ; kept\nF=2\nmod=\n9,?,M\n1-2,#,R2\nX,?,R2\n*\nXtreme=.4\nGL=\n2,1,grouped\n*\nDelements=2L\n"
    "labels=Build\n1,Persons\n1-5\n*\n2,Items\n1,one,,1\n2,two\n3,three\n*\nDATA= ; here\n";
constexpr std::string_view kMixedData = "1,one,1\n1,two,8\n1,three,2\n%more.inc\n3-5,one,1,2,0\n2,one,0\n";
const std::vector<NamedText> kMixedFiles = {
    {"settings.inc", "um=50,10\nMissing=9\n"},
    {"more.inc", "2,two,2\n2,three,1\n3-5,two,0,1,9\n3-5,three,1,0,2\n"},
    {"data2.txt", "1-5,one,0,1,2,0,1\n1-5,two,2,1,1,0,8\n1-5,three,0,0,2,1,2\n"}};

TEST(AnchorRoundTrip, TheSourceIsReadAsItsReaderTakesIt) {
  Source source{std::string(kMixedSource) + std::string(kMixedData), kMixedFiles, {}};
  const std::string head =
      "Title=A title, and more\r\nMissing=9\r\n;Output=report.txt,anchors.txt\r\n;  anchor=/dev/null\r\n"
      "Omit=No ; kept\r\nF=2\r\nXtreme=.4\r\nDelements=2L\r\nUmean (user mean - scale - decimal places)=  50, 10, 2 ;";
  RoundTrip trip = ExpectRoundTrip(source);
  EXPECT_EQ(trip.Anchors.substr(0, head.size()), head);
  EXPECT_EQ(trip.Anchors.substr(trip.Anchors.find("DATA")),
            "DATA= ; here\r\n1,one,1\r\n1,two,8\r\n1,three,2\r\n2,two,2\r\n2,three,1\r\n3-5,two,0,1,9\r\n"
            "3-5,three,1,0,2\r\n3-5,one,1,2,0\r\n2,one,0\r\n");
  EXPECT_TRUE(AnchorText(source, trip.Run, {.IncludeData = false}).ends_with("*\r\nData=\r\n"));
  ExpectRoundTrip(source, {.CurrentSettings = true});

  source.ExtraWords = {"Missing=8", "Data=data2.txt", "Umean=0", "Output=elsewhere.txt"};
  const std::string extras = "Missing=8\r\nData=data2.txt\r\n;Output=elsewhere.txt\r\nTitle=";
  trip = ExpectRoundTrip(source, {.ExtraSpecs = source.ExtraWords});
  EXPECT_EQ(trip.Anchors.substr(0, extras.size()), extras);
  EXPECT_EQ(trip.Anchors.find("1,one"), std::string::npos);
}

TEST(AnchorRoundTrip, DataBesideTheSpecificationAreFoundFromElsewhere) {
  const Design design = SimulatedDesign({6, 3}, 1, 1);
  FinishedAnalysis run = design.Run();
  const TestFolder folder;
  std::filesystem::create_directory(folder.Path() + "below");
  const std::string data = folder.Write("below/data.txt", design.DataLines());
  run.A.Settings.SpecFileName = folder.Write("below/spec.txt", design.Specification());
  Console silent;
  for (const std::string place : {"", "below/"}) {
    TextOutput file(folder.Path() + place + "anchors.txt");
    WriteAnchorFile({}, run.A, silent, file);
    file.Close();
    std::ifstream anchors(file.Path());
    const std::string text(std::istreambuf_iterator<char>(anchors), {});
    EXPECT_NE(text.find(place.empty() ? "\nData = " + data + "\r\n" : "\nData=data.txt\r\n"), std::string::npos)
        << text;
  }
  std::filesystem::remove(run.A.Settings.SpecFileName);
  TextOutput file(folder.Path() + "anchors.txt");
  EXPECT_THROW(WriteAnchorFile({}, run.A, silent, file), Halt);
}

auto Restored(const Settings& s) {
  return std::tie(s.Title, s.ArrangeSpec, s.AsciiOption, s.BarchartsOption, s.BatchOption, s.BeepOn, s.BiasDirection,
                  s.BoxShow, s.ConvergenceScore, s.ConvergenceLogit, s.ConvergenceCategoryScore,
                  s.ConvergenceCategoryLogit, s.CsvDelimiter, s.DelementsOption, s.DvaluesSpec, s.Esubtotals,
                  s.FairOption, s.HardwareExponent, s.HeadingLinesOption, s.InterRaterFacets, s.InvalidLinesOption,
                  s.IterationsLimit, s.JuxtaposeLines, s.LeftHand, s.MissingCodes, s.NewtonStep, s.NullElement,
                  s.OmitUnobserved, s.PtBiserial, s.QuoteMark, s.QueryOption, s.RealSE, s.ReplicationChar, s.Seed,
                  s.SubsetDetection, s.T3onscreen, s.T4Max, s.T8NBC, s.TablesOption, s.TotalScore, s.Udecimals, s.Umean,
                  s.Uscale, s.UnexpectedMin, s.USort, s.Encoding.Utf8Encoded, s.Encoding.Utf8Sub, s.VerticalSpec,
                  s.Whexact, s.WriteIterations, s.XtremeMain, s.XtremeBias, s.YardstickSpec, s.ZscoreSize, s.ZscoreT,
                  s.OutputFileName, s.DataFileName);
}

TEST(SettingsFile, ReadBackItRestoresEverySetting) {
  const std::string labels = "Labels=\n1,a\n1=x\n*\n2,b\n1=x\n*\n3,c\n1=x\n*\n";
  const std::string specifications[] = {
      "Facets=3\nData=data.txt\n",
      "Title=\"a title\", in parts\nFacets=3,5\nArrange=2A,mN\nASCII=W\nBarcharts=All\nBatch=Y\nBeep=Y\nBias=-\n"
      "Boxshow=N\nCenter=2,3Z\nConvergence=.1,1/3,1/7,.00001\nCSV=Tab\nData=a.txt+b.txt\nDelements=2L,NL\n"
      "Dvalues=\n3,1,2,4\n2,7\n*\nEntered=2,1,3,0,2\nEsubtotals=\n1=2,3\n2=1\n*\nFair=Zero\nGlabel=\n1,2,one\n"
      "3,4,two\n*\n"
      "Hardware=33.3\nHeading=N\nInter-rater=2,1,3\nInvalid=Repeated\nIterations=17\nJuxtapose=9\nNull=-1\nLeft=Y\n"
      "Missing=9,x,.\nNegative=1,3\nNewton=.7\nOmit=N\nOutput=out.txt\nPt-biserial=I\nQM=Q\nQuery=Y\n"
      "Replication=W\nSeed=12\nStandard=Real\nSubsets=List\nT3=N\nT4MAX=7\nT8NBC=NB+1,3\nTables=0110\nTotalscore="
      "N\nUmean=10/3,-1/3,5\n"
      "Unexpected=2.25\nUsort=(u)(1,z)\nUTF8E=N\nUTF8sub=#\nVertical=1A,2N\nWhexact=N\nWrite=Y\nXtreme=.1234567,1/9\n"
      "Yardstick=112,4,-5,5,End\nZscore=1/3,2\n",
      "Facets=3\nData=\n",
      "Facets=3\nData=x.txt\nPositive=1,2,3\nNoncenter=0\nBias=omit\nArrange=\nVertical=\nDvalues=2,$L\n"
      "Glabel=2,1,only\nCSV=|\nQM=Semicolon\nSubsets=Report\nPt=N\nInvalid=1\nTables=N\nUmean=16777.216,1234567.9\n"};
  for (const std::string& specification : specifications) {
    const SpecRun run(specification.find("Data=\n") == std::string::npos
                          ? specification + labels
                          : specification.substr(0, 9) + labels + "Data=\n");
    ASSERT_EQ(run.Error, "");
    std::string text;
    for (const std::string& line : SettingsLines(run.A)) text += line + "\n";
    SCOPED_TRACE(text);
    const SpecRun again(text + labels + (run.A.Settings.InlineData ? "Data=\n" : ""));
    ASSERT_EQ(again.Error, "");
    EXPECT_EQ(Restored(run.A.Settings), Restored(again.A.Settings));
    EXPECT_EQ(run.A.GroupLabels, again.A.GroupLabels);
    EXPECT_TRUE(again.A.SpecComments.empty());
    for (const FacetNumber facet : run.A.Facets.all()) {
      EXPECT_EQ(run.A.Facets[facet].FacetPositive, again.A.Facets[facet].FacetPositive);
      EXPECT_EQ(run.A.Facets[facet].FacetCenter, again.A.Facets[facet].FacetCenter);
    }
    ASSERT_EQ(run.A.Fields.DataFacetCount(), again.A.Fields.DataFacetCount());
    for (const ColumnNumber column : run.A.Fields.Columns.all())
      EXPECT_EQ(run.A.Fields.Columns[column].ColumnFacet, again.A.Fields.Columns[column].ColumnFacet);
  }
}

/// Every keyword has its line, but those that say in another way what a line says, and those of rebuilt blocks.
TEST(SettingsFile, LinesAreRecognisedByTheirKeywords) {
  const SpecRun run("Facets=1\nData=x\nDvalues=1,2\nEsubtotals=1,1\nSeed=7\nLabels=\n1,a\n1=x\n*\n");
  std::set<std::string_view> missing = {"HS=",       "Labels=",          "Models=",    "Noncenter=", "Null=",
                                        "Positive=", "Show unobserved=", "Udecimals=", "Uscale=",    "Rating scale="};
  for (const std::string& line : SettingsLines(run.A)) {
    if (!IsLetter(line.front())) continue;
    const Keyword* const keyword = FindKeyword(line);
    ASSERT_NE(keyword, nullptr);
    EXPECT_TRUE(missing.insert(keyword->Name).second) << line;
  }
  for (const Keyword& keyword : Keywords()) EXPECT_TRUE(missing.contains(keyword.Name)) << keyword.Name;
}

}  // namespace
}  // namespace tessaly
