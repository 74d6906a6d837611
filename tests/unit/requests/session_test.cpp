#include "requests/session.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>

#include "fixture/session_fixture.h"
#include "output/text_output.h"
#include "support/bytes.h"

namespace tessaly {
namespace {

/// 12 persons, 4 raters, 3 items; a bias run of raters and items.
Design ThreeFacets() {
  Design design = SimulatedDesign({12, 4, 3}, 3, 11);
  design.Models = "?,?B,?B,R3";
  return design;
}

TEST(Session, RunTablesComeAgainByteForByte) {
  SessionFixture session(ThreeFacets());
  for (const char* request : {"table4", "table5", "table6", "table7", "table8", "bias"}) {
    const std::string table = session.Written(request);
    EXPECT_TRUE(session.Well) << request;
    EXPECT_GT(table.size(), 300U) << request;
    EXPECT_NE(session.Report.find(table), std::string::npos) << request;
  }
  // On the screen the same lines stand without the line ends of files.
  std::string shown = session.Shown("table7 facets=2");
  std::string written = session.Written("table7 facets=2");
  std::erase(written, '\r');
  EXPECT_EQ(shown, written);
  EXPECT_EQ(session.Read("report.txt"), session.Report);
}

TEST(Session, RefusalsNameTheRemedyAndWriteNothing) {
  SessionFixture session(ThreeFacets());
  const std::map<std::string, std::string> refusals = {
      {"tabel7", "\"tabel7\" is no request. Did you mean table7? \"help\" lists them all"},
      {"table7 facet=2", "\"facet=\" is no option of table7. Did you mean facets?"},
      {"table7 facets=", "Table 7: Please check Facet"},
      {"table7 order=measure", "Table 7: Please select Ascend/Descend"},
      {"table7 order= direction=ascend", "Table 7: Please select Measure/Number/... order"},
      {"table7 facets=4",
       "facets=4 is not understood. Please give facets by number (1 to 3) or label, with commas between them."},
      {"table7 order=measure,size direction=ascend",
       "order=size is not understood. Please give one of: measure, number, label, fit. Did you mean fit?"},
      {"table7 facets=2 facets=3", "facets= is given twice. Please give it once, with commas between its values"},
      {"table8 scales=", "Table 8: Please choose structure"},
      {"table8 numbers=no barcharts=no curves=no", "Table 8: Please select numbers/barcharts/curves"},
      {"table4 t4maximum=0", "Table 4 not output. T4maximum = 0"},
      {"bias lower=2", "Bias/Interaction: Please check a Facet in upper list"},
      {"bias upper=2", "Bias/Interaction: Please check a Facet in lower list"},
      {"bias upper=2 lower=2", "Bias/Interaction: Please check different facets in upper and lower list"},
      {"bias order=fit", "Bias/Interaction: Please select Ascend/Descend"},
      {"bias plot14=yes", "Bias/Interaction: the plots of plot13= and plot14= need a file. Please add plotfile=NAME"},
      {"bias plot13=no plotfile=p.txt",
       "Bias/Interaction: nothing is left for plotfile=. Please select plot13=yes or plot14=yes"},
      {"zandrel columns=2", "Zandrel control & data: Please check a Facet in upper list"},
      {"zandrel rows=1", "Zandrel control & data: Please check a Facet in lower list"},
      {"scorefile facets=", "Score file: Please check Facet"},
      {"curves kind=information empirical=yes",
       "empirical= belongs to kind=probability and kind=expected. Please leave it out"},
      {"table5 to=excel",
       "Excel files cannot be made yet. Please use file=NAME with separator=tab, which a spreadsheet opens"},
      {"show settings file=s.txt", "Please write \"show settings\" or \"show files\"."},
      {"show setings", "Please write \"show settings\" or \"show files\". Did you mean settings?"},
  };
  for (const auto& [request, text] : refusals) {
    EXPECT_EQ(session.Shown(request), "[" + text + "]\n") << request;
    EXPECT_FALSE(session.Well) << request;
  }
  for (const std::string name : {"spec.txt", "data.txt", "report.txt"}) {
    const std::string before = session.Read(name);
    EXPECT_EQ(session.Written("table7", name), before);
    EXPECT_FALSE(session.Well) << name;
  }
  const std::string nowhere = session.Folder.Path() + "none/t.txt";
  EXPECT_EQ(session.Shown("table5 file=" + nowhere),
            "[Failure writing output file: " + nowhere + "]\n[Error 2: No such file or directory]\n");
  EXPECT_EQ(session.Shown("bias plotfile=" + nowhere),
            "[Failure writing output file: " + nowhere + "]\n[Error 2: No such file or directory]\n");
  EXPECT_EQ(session.Shown("  ; a comment"), "");
  EXPECT_TRUE(session.Well);
}

TEST(Session, WordsAreCheckedBeforeTheAnalysis) {
  for (const char* fine : {"", " # a comment", "help table7", "bias help", "show files", "table7 facets=9", " QUIT "})
    EXPECT_EQ(RequestProblem(fine), "") << fine;
  for (const char* wrong : {"tabel7", "table7 facet=1", "table7 file=\"a b", "show nothing", "quit now"})
    EXPECT_NE(RequestProblem(wrong), "") << wrong;
}

TEST(Session, OtherLimitsOfTable4LeaveTheListOfTheRun) {
  SessionFixture session(ThreeFacets());
  const std::string again = "recomputing residuals";
  const std::string file = " file=" + session.Folder.Path() + "t4.txt";
  EXPECT_NE(session.Shown("table4 unexpected=1" + file).find(again), std::string::npos);
  EXPECT_EQ(session.Shown("table4" + file).find(again), std::string::npos);
}

/// What an analysis has found.
std::vector<float> Findings(const Analysis& analysis) {
  std::vector<float> findings;
  for (const float measure : analysis.Elements.ElementMeasure) findings.push_back(measure);
  for (const ElementFit& fit : analysis.Elements.Fit) findings.push_back(fit.StandardError);
  for (const ScaleNumber scale : analysis.Scales.Scales.all())
    for (int step = 0; step <= analysis.Scales.Scales[scale].ScaleTopCategory; ++step)
      findings.push_back(analysis.Scales.CategoryStep(scale, step));
  return findings;
}

TEST(Session, RequestsInAnyOrderShowTheSame) {
  const std::vector<std::string> requests = {
      "table4",
      "table4 unexpected=1 t4maximum=7 usort=(z)(2,1)",
      "table6 extremes=measure barchart=no",
      "table7 order=fit,label direction=ascend,descend unobserved=yes",
      "table8 numbers=no",
      "bias",
      "bias upper=1 lower=3 table14=no sign=minus zsig=1 order=measure direction=descend",
      "residualfile used=yes unused=yes decimals=5 separator=,",
      "scorefile fields=measure,s.e.,e-label separator=tab quote=double",
      "graphfile headings=no",
      "anchorfile current=yes",
      "simulated seed=3",
      "zandrel rows=1 columns=2,3 data=last",
      "settings",
      "curves kind=expected empirical=yes interval=0.5 smoothing=3",
      "curves kind=probability empirical=yes",
      "curves kind=cumulative flip=yes",
      "ruler vertical=1*,2A",
      "nonsense",
  };
  SessionFixture alone(ThreeFacets());
  const std::vector<float> found = Findings(alone.A);
  std::map<std::string, std::string> expected;
  for (const std::string& request : requests) {
    SessionFixture fresh(ThreeFacets());
    expected[request] = fresh.Shown(request);
    ASSERT_GT(expected[request].size(), 40U) << request;
  }
  std::mt19937 random(5);
  for (int round = 0; round < 60; ++round) {
    const std::string& request = requests[random() % requests.size()];
    // The folder's name stands in what is shown.
    const auto plain = [](std::string text) {
      for (std::size_t at = 0; (at = text.find("spec_", at)) != std::string::npos; at += 5)
        if (text.size() >= at + 11) text.replace(at + 5, 6, "......");
      return text;
    };
    ASSERT_EQ(plain(alone.Shown(request)), plain(expected[request])) << round << ": " << request;
  }
  EXPECT_EQ(Findings(alone.A), found);
  EXPECT_EQ(alone.Shown("table7"), SessionFixture(ThreeFacets()).Shown("table7"));
}

TEST(Session, ModifiedSpecificationsHoldAndGoBackWithoutDrift) {
  SessionFixture session(ThreeFacets());
  const std::vector<std::string> watched = {"table7", "table6",    "curves kind=expected empirical=yes",
                                            "bias",   "scorefile", "residualfile"};
  std::vector<std::string> before;
  for (const std::string& request : watched) before.push_back(session.Shown(request));
  const std::vector<float> found = Findings(session.A);
  const ElementTable analysed = session.A.Elements;
  const std::string title = session.A.Settings.Title;

  session.Shown(
      "modify se=real uscale=7.3 umean=500 udecim=1 totalscore=no lefthand=yes positive=\"2 and 3\" negative=3");
  EXPECT_TRUE(session.Well);
  bool enlarged = false;
  for (const ElementIndex element : analysed.Fit.all()) {
    const ElementFit& fit = analysed.Fit[element];
    const double factor = std::sqrt(std::max(1.0, double{fit.InfitMeanSquare}));
    EXPECT_NEAR(double{session.A.Elements.Fit[element].StandardError}, double{fit.StandardError} * factor, 1e-6);
    enlarged |= factor > 1;
  }
  EXPECT_TRUE(enlarged);
  EXPECT_NE(session.Shown("table7 facets=2").find("|   +    "), std::string::npos);
  EXPECT_NE(session.Shown("table7 facets=3").find("|   -    "), std::string::npos);
  EXPECT_NE(session.Shown("table7 facets=2").find(" Real "), std::string::npos);

  session.Shown("modify uscale=0 title=\"Another title, longer than a date\"");
  EXPECT_NE(session.Shown("settings").find("= Another title, longer than a date\n"), std::string::npos);
  EXPECT_EQ(session.A.Settings.Uscale, 7.3F);
  EXPECT_NE(session.Shown("table5").find("Another title"), std::string::npos);
  session.Shown("modify uscale=3 box=nonsense");
  EXPECT_FALSE(session.Well);
  EXPECT_EQ(session.A.Settings.Uscale, 7.3F);
  for (const char* scale : {"0.1", "3", "1e6"}) session.Shown("modify se=model uscale=" + std::string(scale));
  session.Shown("modify se=real");

  session.Shown(
      "modify se=model uscale=1 umean=0 udecim=2 totalscore=yes lefthand=no positive=1 negative=2,3 title=\"" + title +
      "\"");
  EXPECT_EQ(Findings(session.A), found);
  for (std::size_t at = 0; at < watched.size(); ++at) EXPECT_EQ(session.Shown(watched[at]), before[at]) << watched[at];
}

TEST(Session, TheSeedInSimulatedDataMakesThemAgain) {
  SessionFixture session(ThreeFacets());
  constexpr std::string_view kSeed = "; seed: ";
  const std::string data = session.Shown("simulated");
  const std::size_t at = data.find(kSeed) + kSeed.size();
  const std::string seed = data.substr(at, data.find('\n', at) - at);
  EXPECT_EQ(session.Shown("simulated seed=" + seed), data);
  EXPECT_NE(session.Shown("simulated seed=" + seed + "0"), data);
  EXPECT_NE(session.Shown("simulated seed=123456789"), session.Shown("simulated seed=123456790"));
}

TEST(Session, FilesAreNamedAsToldAndTemporaryOnesGo) {
  constexpr auto kOwnersOnly = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
  std::set<std::string> temporary;
  {
    SessionFixture session(ThreeFacets());
    session.Shown("scorefile facets=1,3 file=" + session.Folder.Path() + "scores.txt");
    EXPECT_EQ(session.Read("scores.txt"), "");
    EXPECT_NE(session.Read("scores.1.txt"), "");
    EXPECT_EQ(session.Read("scores.2.txt"), "");
    EXPECT_NE(session.Read("scores.3.txt"), "");
    session.Shown("bias barchart=no table13=no table14=no plotfile=" + session.Folder.Path() +
                  "plot.txt file=" + session.Folder.Path() + "b.txt");
    session.Shown("bias barchart=no table13=no table14=no plotfile=" + session.Folder.Path() + "plot.txt");
    EXPECT_EQ(session.Read("plot.txt").substr(0, 19), "2020-02-29 12:00:00");
    const std::string listed = session.Shown("show files");
    EXPECT_NE(listed.find("plot.txt"), std::string::npos);
    EXPECT_EQ(listed.find("plot.txt"), listed.rfind("plot.txt"));
    EXPECT_EQ(session.Read("b.txt").find("Table 13"), std::string::npos);
    session.Shown("table7 to=temporary");
    session.Shown("scorefile to=temporary");
    const std::string all = session.Shown("show files");
    for (const std::string_view line : SplitAt(all, '\n')) {
      const std::string path(line.substr(std::min(line.rfind("= ") + 2, line.size())));
      if (!path.empty() && !path.starts_with(session.Folder.Path())) temporary.insert(path);
    }
    EXPECT_EQ(temporary.size(), 4U);
    for (const std::string& path : temporary) {
      EXPECT_GT(std::filesystem::file_size(path), 100U) << path;
      // Made by this program and for this user alone: in a shared folder others may have put links.
      EXPECT_EQ(std::filesystem::status(path).permissions(), kOwnersOnly) << path;
    }
  }
  for (const std::string& path : temporary) EXPECT_FALSE(std::filesystem::exists(path)) << path;
}

TEST(Session, DefaultFieldsGoIntoTheSettingsFile) {
  SessionFixture session(ThreeFacets());
  session.Folder.Write("settings.ini", "");
  EXPECT_NE(session.Shown("scorefile fields=Measure,F-Label default=yes").find("Default done"), std::string::npos);
  EXPECT_EQ(session.Shown("scorefile fields=T.Score,T.Count,FairMAvge,PtMea,PtBis"),
            session.Shown("scorefile fields=score,count,fairavge,ptmea"));
  EXPECT_TRUE(session.Well);
  session.Shown("residualfile fields=Res decimals=4 default=yes");
  EXPECT_EQ(session.Read("settings.ini"),
            "Score selection = NNNNYNNNNNNNNNNNNNNNNNNNNNNY\nyni selection = NNNYNNNNNNN4NNN\n");
  EXPECT_NE(session.Shown("scorefile fields=Mesure").find("Did you mean Measure?"), std::string::npos);
}

TEST(Session, CompletesVerbsOptionsAndValues) {
  SessionFixture session(ThreeFacets());
  using Words = std::vector<std::string>;
  EXPECT_EQ(session.Requests->Completions("tab"), (Words{"table4", "table5", "table6", "table7", "table8"}));
  EXPECT_EQ(session.Requests->Completions("table7 o"), (Words{"order="}));
  EXPECT_EQ(session.Requests->Completions("\ttable7\to"), (Words{"order="}));
  EXPECT_EQ(session.Requests->Completions("table7 order=measure,l"), (Words{"order=measure,label"}));
  EXPECT_EQ(session.Requests->Completions("table7 facets="), (Words{"facets=1", "facets=2", "facets=3"}));
  EXPECT_EQ(session.Requests->Completions("curves scale=1 kind=cu"), (Words{"kind=cumulative"}));
  EXPECT_EQ(session.Requests->Completions("nonsense o"), Words{});
  EXPECT_TRUE(Session::ExpectsFile("bias plotfile=/tm"));
  EXPECT_FALSE(Session::ExpectsFile("bias upper="));
}

}  // namespace
}  // namespace tessaly
