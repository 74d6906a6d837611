#include "output/score_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

#include "fixture/design.h"
#include "support/bytes.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

using Lines = std::vector<std::string>;

/// The lines of a file, without their CR LF.
Lines LinesOfFile(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  Lines lines;
  for (std::string line; std::getline(stream, line);) {
    EXPECT_TRUE(line.ends_with('\r')) << line;
    lines.push_back(line.substr(0, line.size() - 1));
  }
  return lines;
}

Lines ScoresOf(const Analysis& analysis, FacetNumber facet, OutputDestination to = OutputDestination::Plain) {
  const TestFolder folder;
  TextOutput file(folder.Path() + "scores.txt");
  WriteScoreFile(facet, to, analysis, file);
  file.Close();
  return LinesOfFile(file.Path());
}

// Facet 2, negative, has Ann (7) with figures of all kinds, and Roberta without observations.
class ScoreFileTest : public testing::Test {
 protected:
  ScoreFileTest() {
    A.Facets = DefaultFacets(2);
    Facet& facet = A.Facets[{2}];
    facet.FacetLabel = "Raters";
    facet.FacetFirstElement = {1};
    facet.FacetLastElement = {2};
    facet.FacetLabelWidth = 3;
    A.Elements.Create(2);
    A.Elements.ElementNumber[{1}] = 7;
    A.Elements.ElementLabel[{1}] = "Ann";
    A.Elements.ElementGroup[{1}] = -3;
    A.Elements.ElementMeasure[{1}] = .5F;
    ElementRecord& record = A.Elements.ElementStats[{1}];
    record.AllScore = 12;
    record.AllCount = 5;
    record.RawScore = 9;
    record.ObservedCount = 4;
    record.ElementWeight = 2.5F;
    // S.E.; infit with its degrees of freedom; outfit; displacement, discrimination, fair scores, correlations.
    A.Elements.Fit[{1}] = {.25F, 1.5F, 1.96F, 8, .75F, -1.6449F, 4, .125F, 1.1F, 8.2F, .61F, .5F};
    A.Elements.ElementNumber[{2}] = 2147483646;
    A.Elements.ElementLabel[{2}] = "Roberta";
    A.Elements.ElementStatus[{2}] = ElementStatus::Unobserved;
  }

  /// Only the fields with these numbers.
  void Select(const std::vector<std::size_t>& fields) {
    A.Settings.ScoreFields.assign(28, 'N');
    for (const std::size_t field : fields) A.Settings.ScoreFields[field - 1] = 'Y';
  }

  Analysis A;
};

TEST_F(ScoreFileTest, ColumnsOfFixedWidth) {
  // 12 / 5, 8.2 / 4; 8 x 1.5, 4 x .75; the normal deviates of 5% and 10%.
  const std::string ann =
      "     12.00      5.00      2.40      2.05       .50       .25      1.50      1.96       .75     -1.64"
      "       .61       .50      1.10      -.13        -1        -3      2.50        -1     12.00      8.00"
      "     .0500      3.00      4.00     .1000         7";
  EXPECT_EQ(
      ScoresOf(A, {2}),
      Lines({"2 Raters",
             "   T.Score   T.Count  Obs.Avge FairMAvge   Measure      S.E.   InfitMS    InfitZ  OutfitMS   OutfitZ"
             "     PtMea   PtMeExp   Discrim  Displace    Status     Group    Weight      Sign InfChiSqu   Infitdf"
             "   InfPr2s OutfChiSq  Outfitdf  OutfPr2s         2 Rat  F-Number F-Label",
             ann + " Ann         2 Raters"}));

  // Names give way to the marks, widths do not.
  A.Settings.QuoteMark = "'";
  A.Settings.OmitUnobserved = false;
  Select({1, 3, 15, 25, 26, 27, 28});
  EXPECT_EQ(ScoresOf(A, {2}),
            Lines({"2 'Raters'", " 'T.Score' 'Obs.Avg'  'Status'       '2' 'Raters'  'F-Numbe' 'F-Label'",
                   "     12.00      2.40        -1         7 'Ann'             2 'Raters'",
                   "       .00       .00         02147483646 'Roberta'         2 'Raters'"}));
  A.Settings.QuoteMark = "<<<<<";
  Select({1, 26});
  A.Elements.ElementLabel[{1}] = "\xC3\x84nne";
  EXPECT_EQ(ScoresOf(A, {2})[1], " <<<<<<<<<< <<<<<Raters<<<<< ");
  EXPECT_EQ(ScoresOf(A, {2})[2], "     12.00 <<<<<\xC3\x84nne<<<<<   ");
}

TEST_F(ScoreFileTest, SettingsChooseFiguresNamesAndUnits) {
  A.Settings.CsvDelimiter = ",";
  const auto fields = [&] {
    const Lines lines = ScoresOf(A, {2});
    return lines[1] + " | " + lines[2];
  };
  Select({1, 2, 3, 4, 11});
  A.Settings.TotalScore = false;
  A.Settings.FairOption = 'Z';
  A.Settings.PtBiserial = 'I';
  EXPECT_EQ(fields(), "Score,Count,Obs.Avge,FairZAvge,PtBisI | 9.00,4.00,2.25,2.05,.61");
  A.Settings.PtBiserial = 'Y';
  Select({11});
  EXPECT_EQ(fields(), "PtBis | .61");

  // Standard errors have no sign; displacements have that of the facet, and of the scale.
  Select({5, 6, 14, 18});
  A.Settings.Umean = 50;
  A.Settings.Uscale = -10;
  A.Settings.Udecimals = 3;
  EXPECT_EQ(fields(), "Measure,S.E.,Displace,Sign | 45.000,2.500,1.250,-1");
  A.Facets[{2}].FacetPositive = true;
  EXPECT_EQ(fields(), "Measure,S.E.,Displace,Sign | 45.000,2.500,-1.250,1");

  A.Settings.HeadingLinesOption = false;
  A.Settings.ScoreFields = "NNY";
  EXPECT_EQ(ScoresOf(A, {2}), Lines({"2.25"}));
  A.Settings.ScoreFields.assign(28, 'N');
  EXPECT_EQ(ScoresOf(A, {2}), Lines());
  A.Settings.HeadingLinesOption = true;
  EXPECT_EQ(ScoresOf(A, {2}), Lines({"2,Raters"}));
  EXPECT_EQ(ScoresOf(A, {1}), Lines({"1,"}));
}

TEST_F(ScoreFileTest, DelimitedLabelsAreOneField) {
  Select({25, 26, 27, 28});
  A.Settings.CsvDelimiter = ";";
  A.Facets[{2}].FacetLabel = "1/2";
  A.Elements.ElementLabel[{1}] = "Ann; \"A\"";
  EXPECT_EQ(ScoresOf(A, {2}), Lines({"2;1/2", "2;1/2;F-Number;F-Label", "7;\"Ann; \"\"A\"\"\";2;1/2"}));
  A.Settings.QuoteMark = "'";
  EXPECT_EQ(ScoresOf(A, {2}), Lines({"2;'1/2'", "'2';'1/2';'F-Number';'F-Label'", "7;'Ann; \"A\"';2;'1/2'"}));

  A.Settings.QuoteMark.clear();
  A.Settings.CsvDelimiter = "\t";
  EXPECT_EQ(ScoresOf(A, {2}, OutputDestination::Spreadsheet)[0], "2\t_1/2");
  EXPECT_EQ(ScoresOf(A, {2}, OutputDestination::Spreadsheet)[2], "7\t\"Ann; \"\"A\"\"\"\t2\t_1/2");
  A.Settings.HeadingLinesOption = false;
  EXPECT_EQ(ScoresOf(A, {2}, OutputDestination::R),
            Lines({"2\t1/2\tF-Number\tF-Label", "7\t\"Ann; \"\"A\"\"\"\t2\t1/2"}));
}

using Row = std::map<std::string, std::string>;

/// The rows of a semicolon-delimited file, by heading, by the element number under `facet`.
std::map<std::string, Row> Rows(const Lines& lines, const std::string& facet) {
  std::map<std::string, Row> rows;
  for (std::size_t i = 2; i < lines.size(); ++i) {
    Row row;
    for (std::size_t field = 0; field < 28; ++field)
      row[std::string(SplitAt(lines[1], ';').at(field))] = SplitAt(lines[i], ';').at(field);
    rows[row[facet]] = row;
  }
  return rows;
}

TEST(ScoreFile, FiguresOfAnAnalysisAreThoseOfItsDataAndOfTable7) {
  for (const bool totals : {true, false}) {
    // Person 1 fails everywhere, person 2 nowhere; person 3 is anchored; person 4 did not come.
    Design design = SimulatedDesign({15, 6}, 3, 7);
    design.Settings += "Noncenter=1,2\nUmean=0,2,3\nCSV=Semicolon\nShow unobserved=Yes\n";
    if (!totals) design.Settings += "Totalscore=No\n";
    design.FacetFields[0] = ",A";
    design.Field(1, 3) = ",3";
    std::erase_if(design.Ratings, [](const Rating& rating) { return rating.Elements[0] == 4; });
    for (Rating& rating : design.Ratings)
      if (rating.Elements[0] <= 2) rating.Response = rating.Elements[0] == 1 ? 0 : 3;
    const FinishedAnalysis run = design.Run();

    auto persons = Rows(ScoresOf(run.A, {1}), "1");
    for (const auto& [person, status] :
         std::map<std::string, std::string>{{"1", "-2"}, {"2", "-3"}, {"3", "1"}, {"4", "0"}, {"5", "-1"}})
      EXPECT_EQ(persons[person]["Status"], status) << person;
    EXPECT_EQ(persons["3"]["Measure"], "3.000");

    for (auto& [item, row] : Rows(ScoresOf(run.A, {2}), "2")) {
      int score = 0, count = 0;
      for (const Rating& rating : design.Ratings) {
        if (NumberText(rating.Elements[1]) != item || (!totals && BelowActive(run.Status(1, rating.Elements[0]))))
          continue;
        score += rating.Response;
        ++count;
      }
      EXPECT_EQ(row[totals ? "T.Score" : "Score"], NumberText(score) + ".00");
      EXPECT_EQ(row[totals ? "T.Count" : "Count"], NumberText(count) + ".00");
      // The last arrangement lists each item once.
      const std::size_t label = run.Report.find("Element " + item, run.Report.rfind("\nTable 7.2."));
      ASSERT_NE(label, std::string::npos);
      const std::size_t start = run.Report.rfind('\n', label);
      for (const char* heading :
           {"Obs.Avge", "FairMAvge", "Measure", "S.E.", "InfitMS", "OutfitMS", "PtMea", "PtMeExp", "Discrim"})
        EXPECT_LT(run.Report.find(" " + row[heading], start), label) << heading;
    }
  }
}

TEST(ScoreFile, NamesHaveTheNumberOfTheFacet) {
  const std::map<std::string, std::string> names = {{"scores.txt", "scores12.txt"},
                                                    {"scores", "scores.12.txt"},
                                                    {"scores.", "scores.12.txt"},
                                                    {"a.b/scores", "a.b/scores.12.txt"},
                                                    {"a/my.scores.csv", "a/my.scores12.csv"},
                                                    {"a.b/", "a.b/scorefil.12.txt"}};
  for (const auto& [name, file] : names) EXPECT_EQ(ScoreFileName(name, {12}), file);
}

TEST_F(ScoreFileTest, AllFacetsWithLabelsUntilOneFails) {
  const TestFolder folder;
  const auto exists = [&](const std::string& name) { return std::filesystem::exists(folder.Path() + name); };
  RecordingConsole console;
  User user;
  RunControl control(user);
  A.Facets.add(A.Facets[{2}]);
  A.Facets[{3}].FacetLabel = "12";
  A.Facets.add(A.Facets[{3}]);
  A.Settings.OutputFileName = folder.Path() + "report.txt";
  A.Settings.CsvDelimiter = "\t";
  A.Settings.ScoreFileName = " scores.XLS ";
  EXPECT_TRUE(WriteAllScoreFiles(ScoreFilePath(A.Settings), A, control, console));
  EXPECT_FALSE(exists("scores1.XLS"));
  EXPECT_EQ(LinesOfFile(folder.Path() + "scores2.XLS")[0], "2\tRaters");
  EXPECT_EQ(LinesOfFile(folder.Path() + "scores4.XLS")[0], "4\t_12");
  EXPECT_EQ(console.Messages[1], "Writing score file for facet 3 to " + folder.Path() + "scores3.XLS");
  EXPECT_TRUE(console.Warnings.empty());

  // A full disk takes the file, but not its lines.
  std::filesystem::create_symlink("/dev/full", folder.Path() + "s3.txt");
  EXPECT_FALSE(WriteAllScoreFiles(folder.Path() + "s.txt", A, control, console));
  EXPECT_EQ(LinesOfFile(folder.Path() + "s2.txt").size(), 3U);
  EXPECT_FALSE(exists("s4.txt"));
  EXPECT_FALSE(WriteAllScoreFiles(folder.Path() + "none/", A, control, console));
  EXPECT_EQ(
      console.Warnings,
      Lines({"... Score file write failed ... " + folder.Path() + "s3.txt: No space left on device",
             "... Score file write failed ... " + folder.Path() + "none/scorefil.2.txt: No such file or directory"}));
}

}  // namespace
}  // namespace tessaly
