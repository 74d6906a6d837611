#include "data/data_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "data/data_line.h"
#include "unit/data/data_run.h"

namespace tessaly {
namespace {

bool Has(const Texts& texts, std::string_view text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

TEST(DataReader, CountsWhatBecomesOfEachLine) {
  const DataRun run(ThreeFacets("Missing=., 99\nModels=\n?,1-3,11,R4\n?,4,?,D2\n?,5,?,P\n?,6,?,M\n*"),
                    "1,1,11,3\n"      // 3
                    "\n"              // blank
                    " ; a comment\n"  // blank
                    "R2,2,2,11,4\n"   // 4, twice
                    "R0,2,3,11,1\n"   // 1, with no weight
                    "3,1,11,5\n"      // above the top
                    "3,1,11,.\n"      // missing code
                    "3,1,11, \n"      // null
                    "3,1,11,-1\n"     // negative
                    "1,4,13,7\n"      // 1: at least 2
                    "1,4,13,1\n"      // 0
                    "1,5,11,200\n"    // 200
                    "1,6,11,2\n"      // treated as missing
                    "1,7,11,2\n"      // no model
                    "8,1,11,2\n"      // unspecified person
                    "1 1 11 99\n"     // missing code
                    "1,1,11,2.5\n"    // not whole
                    "1,1,11,2.0\n"    // 2
                    "1,1,13,2\n"      // no model
                    "*,1\n"           // ends the file
                    "1,1,11,1\n");
  ASSERT_EQ(run.Error, "");
  EXPECT_EQ(run.Observations,
            (Texts{"1,1,11=3", "2,2,11=4 x2", "2,3,11=1 x0", "1,4,13=1", "1,4,13=0", "1,5,11=200", "1,1,11=2"}));
  EXPECT_EQ(run.Cells, (std::vector<int>{0, 0, 0, 1, 1, 2, 0}));
  const DataCounters& counters = run.A.Counters;
  EXPECT_EQ(counters.DataLines, 17);
  EXPECT_EQ(counters.BlankLines, 2);
  EXPECT_EQ(counters.MissingCodeCount, 2);
  EXPECT_EQ(counters.MissingNullCount, 1);
  EXPECT_EQ(counters.NoReplicationCount, 1);
  EXPECT_EQ(counters.InvalidCount, 2);
  EXPECT_EQ(counters.NegativeCount, 1);
  EXPECT_EQ(counters.ResponsesFound, 13);
  EXPECT_EQ(counters.ValidResponses, 7);
  EXPECT_EQ(counters.UnspecifiedCount, 1);
  EXPECT_EQ(run.A.Models.UnmatchedResponses, 2);
  std::vector<std::int64_t> responses;
  for (const ModelStatement& statement : run.A.Models.Statements) responses.push_back(statement.ModelResponses);
  EXPECT_EQ(responses, (std::vector<std::int64_t>{7, 2, 1, 1}));

  const CategoryTable<double>& counts = run.A.Scales.CategoryRawCount;
  EXPECT_EQ(std::vector<double>(counts.Row({0}), counts.Row({0}) + 5), (std::vector<double>{0, 0, 1, 1, 2}));
  EXPECT_EQ(counts({1}, 0) + counts({1}, 1), 2);
  EXPECT_EQ(counts({2}, 200), 1);
  EXPECT_EQ(run.A.Scales.RawTopCategory, 200);
  EXPECT_EQ(run.Said.Messages, (Texts{"Assigning models to Data= \"" + run.Folder.Path() + "data.txt\"",
                                      "First active data line is: 1,1,11,3", " Processed as: 1, 1, 11,  3",
                                      "Total lines in data file = 20"}));
  EXPECT_EQ(run.A.Unspecified, (std::vector<UnspecifiedElement>{{1, "8", 8}}));
}

TEST(DataReader, ReadsFilesInTurnAndDataBehindTheSpecification) {
  const std::string models = "Models=?,?,?,R9\n";
  const DataRun inside(ThreeFacets(models) + "Data=\n", "1,1,11,2\n;;kept\n2,2,13,3 ;; said\n");
  EXPECT_EQ(inside.Observations, (Texts{"1,1,11=2", "2,2,13=3"}));
  EXPECT_EQ(inside.Said.Report, (Texts{";;kept", "2,2,13,3 ;; said", "Total lines in data file = 3"}));
  EXPECT_EQ(inside.A.CurrentDataFile, "(spec.txt)");

  TestFolder folder;
  const std::string b = folder.Write("b.txt", "2,1,11,3\r\n3,1,11,4");
  folder.Write("a.txt", "1,1,11,2\n%" + b + "\n4,1,11,5\n*\n9");
  const DataRun both(ThreeFacets(models) + "Data='" + folder.Path() + "a.txt'++" + b + "\n", "");
  EXPECT_EQ(both.Observations, (Texts{"1,1,11=2", "2,1,11=3", "3,1,11=4", "4,1,11=5", "2,1,11=3", "3,1,11=4"}));
  EXPECT_EQ(both.A.Input.LineNumber, 2) << "line numbers restart with each file";
}

struct FailingLine {
  std::string Settings;
  std::string Line;
  std::string Error;
};

TEST(DataReader, FailsAtTheLineToBlame) {
  std::string many = "1,1,11";
  for (int i = 0; i < 31998; ++i) many += ",1";
  const FailingLine cases[] = {
      {"", "2,11,4",
       "F27 in line 2: Data record does not contain 3 facet references + data. Please start comments with ;"},
      {"", "R3 ; no reference",
       "F27 in line 2: Data record does not contain 3 facet references + data. Please start comments with ;"},
      {"", "1-2,1-3,11,4", "F29 in line 2: Only one facet may have a range (-) in a data line"},
      {"", "1,1-3,11,1,2", "F30 in line 2: Not enough responses for the range: deficit: 1"},
      {"", many, "F67 in line 2: More than 32,000 fields in the data record"},
      {"", "1,0-4000000,11,1",
       "F77 in line 2: Too many elements in the element range for a facet. If nnn-nnn is an element label, please add "
       "letter in front of this label everywhere."},
      {"", "1,1,Ann,2", "F231 in line 2: Invalid element number. Must be integers in range 0 - 2147483646"},
      {"", "1,2147483647,11,2", "F231 in line 2: Invalid element number. Must be integers in range 0 - 2147483646"},
  };
  for (const FailingLine& failing : cases) {
    const DataRun run(ThreeFacets("Models=?,?,?,R9"), "1,1,11,2\n" + failing.Line + "\n1,1,11,3\n");
    EXPECT_EQ(run.Error, QuotedLine(failing.Line) + " | Error " + failing.Error);
  }
  const DataRun second(ThreeFacets("Models=?,?,?,R9\nDvalues=2,1-3"), "1-2,11,4,4\n");
  EXPECT_EQ(second.Error,
            "1-2,11,4,4 | Error F29 in line 1: Only one facet may have a range (-) in a data line: could be a problem "
            "in Dvalues=");
}

TEST(DataReader, SkipsInvalidLines) {
  const std::string data =
      "1,1,Ann,2\n"     // no element number
      "1,1,11\n"        // too few fields
      "9,1,11,2\n"      // person 9 is not declared
      "1-2,1,Bo,2,3\n"  // no element number, behind a range
      "1,7-8,11,3,4\n"
      "8,1,x,5\n"  // no element number, behind a person that is not declared
      "2\n"        // too few fields
      "2,1,13,6\n";
  const auto skipping = [&](const std::string& option) {
    return DataRun(ThreeFacets("Models=?,?,?,R9\nInvalid lines=" + option), data);
  };
  const auto failures = [](const DataRun& run) {
    Texts told;
    for (const std::string& text : run.Said.Warnings)
      if (text.starts_with("Error ")) told.push_back(text.substr(6, text.find(':') - 6));
    return told;
  };
  const DataRun repeated = skipping("Repeated");
  const DataRun single = skipping("Single");
  EXPECT_EQ(failures(repeated),
            (Texts{"F231 in line 1", "F27 in line 2", "F231 in line 4", "F231 in line 6", "F27 in line 7"}));
  EXPECT_EQ(failures(single), (Texts{"F231 in line 1", "F27 in line 2"}));
  EXPECT_EQ(Texts(single.Said.Warnings.begin(), single.Said.Warnings.begin() + 4),
            (Texts{"  Invalid element identifier: \"Ann\" at facet location in data: 3",
                   "  Is this an element label? If so, Delements=LN",
                   "Data line in " + single.A.CurrentDataFile + " is: 1,1,Ann,2",
                   "Error F231 in line 1: Invalid element number. Must be integers in range 0 - 2147483646"}));
  EXPECT_EQ(single.Said.Warnings.size(), 9U) << "four lines, two for the short line, three for person 9";
  for (const DataRun* run : {&repeated, &single}) {
    EXPECT_EQ(run->Observations, (Texts{"1,7,11=3", "1,8,11=4", "2,1,13=6"}));
    EXPECT_EQ(run->A.Counters.DataLines, 3);
    EXPECT_EQ(run->A.Counters.SkippedLines, 5);
    EXPECT_EQ(run->A.Counters.ResponsesFound, 4);
    EXPECT_EQ(run->A.Unspecified, (std::vector<UnspecifiedElement>{{1, "9", 9}}));
    EXPECT_EQ(run->Said.Messages[1], "First active data line is: 9,1,11,2");
  }

  const std::string lines = "x,11,4\n7,11,4\n7,y,4\n7,11,4\n";
  const std::string counted = "Models=?,?,?,R9\nInvalid lines=1\nDvalues=1,";
  EXPECT_EQ(DataRun(ThreeFacets(counted + "$L"), lines).Observations, (Texts{"2,7,11=4", "4,7,11=4"}));
  EXPECT_EQ(DataRun(ThreeFacets(counted + "$C"), lines).Observations, (Texts{"0,7,11=4", "1,7,11=4"}));
  EXPECT_EQ(DataRun(ThreeFacets("Models=?,?,?,R9\nInvalid lines=2"), "1,1-2,11,3\n").Error.substr(0, 23),
            "1,1-2,11,3 | Error F30 ");
}

TEST(DataReader, ExplainsFailures) {
  const DataRun label(ThreeFacets("Models=?,?,?,R9"), "1,1,An_n,2\n");
  EXPECT_EQ(label.Said.Warnings, (Texts{"  Invalid element identifier: \"An-n\" at facet location in data: 3",
                                        "  Is this an element label? If so, Delements=LN"}));
  const DataRun range(ThreeFacets("Models=?,?,?,R9"), "1,5-4000005,11,2\n");
  EXPECT_EQ(range.Said.Warnings, Texts{"Too many elements (4000001) specified in: 5-4000005"});

  const auto withData = [](const std::string& name) {
    return DataRun(ThreeFacets("Models=?,?,?,R9\nData=" + name + "\n"), "");
  };
  const DataRun missing = withData("nowhere.csv");
  EXPECT_EQ(missing.Error, " | Error F43: File not found");
  EXPECT_EQ(missing.Said.Warnings, Texts{"File not found: Input file name = nowhere.csv (Current folder = " +
                                         std::filesystem::current_path().string() + ")"});
  EXPECT_EQ(withData("/no/where.csv").Said.Warnings, Texts{"File not found: Input file name = /no/where.csv"});
  for (const auto& [name, kind] : {std::pair{"a.DTA", "a STATA file (.dta)"},
                                   {"/x/b.sav", "an SPSS file (.sav)"},
                                   {"b.xlsx(Sheet 2)", "an Excel file (.xlsx)"},
                                   {"c.RData", "an R file (.rdata)"}}) {
    const DataRun foreign = withData(name);
    EXPECT_EQ(foreign.Error, " | Error F44: Invalid file format: not in DOS-Text (ASCII) format.");
    EXPECT_EQ(foreign.Said.Warnings,
              Texts{"Data file - " + std::string(name) + " - is " + kind +
                    ": imports are not available in this version. Please save it as comma-separated text (.csv)."});
  }
}

TEST(DataReader, NotesTheFirstUnspecifiedElement) {
  const std::string data = "1,1,11,2\n1,07,12,2\n1,1,12,2\n9,1,14,2\n";
  const DataRun listed(ThreeFacets("Models=?,?,?,R9"), data);
  EXPECT_EQ(listed.Said.Warnings,
            (Texts{"In data: 1,07,12,2", "Processed: 1, 07 (7), 12,  2",
                   "Check (1)? Unspecified element: facet: 3 element: 12 label: 12 in line 2 - see Table 2. Delements "
                   "= N"}));
  EXPECT_EQ(listed.A.Unspecified, (std::vector<UnspecifiedElement>{{1, "9", 9}, {3, "12", 12}, {3, "14", 14}}));
  EXPECT_EQ(listed.A.Counters.UnspecifiedCount, 3);

  const std::string nobuild =
      "Facets=3\nModels=\nX,?,?,R9\n?,?,?,R9\n*\nLabels=Nobuild\n1,P\n1\n*\n2,I\n1\n*\n3,R\n11\n*\n";
  const DataRun unlisted(nobuild, "4,1,11,2\n1,1,12,2\n");
  EXPECT_EQ(unlisted.Observations, Texts{"0,1,11=2"}) << "the unknown person does not matter to the first model";
  EXPECT_EQ(unlisted.Said.Warnings.back(),
            "Check (1)? Unspecified element: facet: 3 element: 12 label: 12 in line 2 - Specify Labels=Build to list "
            "in Table 2. Delements = N");
  EXPECT_TRUE(unlisted.A.Unspecified.empty());
}

TEST(DataReader, RemembersALookUpInAnEmptyFacet) {
  const std::string labels = "Facets=2\nModels=?,?,R9\nLabels=\n1,P\n1-3\n*\n2,Empty\n*\n";
  EXPECT_EQ(DataRun(labels, "1,5,2\n").A.EmptyFacet.value, 2);
  EXPECT_EQ(DataRun(labels, "1,0,2\n").A.EmptyFacet.value, 0) << "the null element is in every facet";
}

TEST(DataReader, NotesInvalidValuesOnce) {
  const DataRun run(ThreeFacets("Models=?,?,?,R3"), "R2,1,1,11,x\n1,1,11,x\n2,1,11,4\n3,1,11,256\n4,9,13,1.5\n");
  const std::string behind = " is too big or not a positive integer, treated as missing.";
  EXPECT_EQ(run.Said.Warnings,
            (Texts{"Check (2)? Invalid datum location: R2,1,1,11,x in line 1. Datum \"x\"" + behind,
                   "Check (2)? Invalid datum location: 2,1,11,4 in line 3. Datum \"4\"" + behind,
                   "Check (2)? Invalid datum location: 3,1,11,256 in line 4. Datum \"256\"" + behind}));
  EXPECT_EQ(run.Said.Report.front(), "Check (2)? Invalid datum location: 4,9,13,1.5 in line 5. Datum \"1.5\"" + behind);
  EXPECT_EQ(run.A.Counters.InvalidCount, 5);
}

TEST(DataReader, TellsOfExcessResponsesOnceAndHowMany) {
  const DataRun run(ThreeFacets("Models=?,?,?,R9"), "1,1,11,2,,\n1,1,11,2,3,,4,\n1,1,11,2,3\n");
  EXPECT_EQ(run.Said.Warnings, (Texts{"Data line in " + run.A.CurrentDataFile + " line: 2", "1,1,11,2,3,,4,",
                                      "Warning (18)! 3 excess responses ignored",
                                      "Excess responses in 2 data lines: is a column missing in Facets= or Entered=, "
                                      "or a decimal comma in the data?"}));
  EXPECT_EQ(run.A.Counters.ResponsesFound, 3);
}

TEST(DataReader, RecodesExactTextsThenRanges) {
  const std::string scale =
      "Models=?,?,?,Mine\nRating scale=Mine,R5\n0,no,,,7+a\n1,low,,,10-20+7\n2,,,,15-30\n-1,,,,9+25-26\n*\n";
  const DataRun run(ThreeFacets(scale),
                    "1,1,11,7\n1,1,11,a\n1,1,11,10.5\n1,1,11,15\n1,1,11,25\n1,1,11,9\n"
                    "1,1,11,7.0\n1,1,11,A\n1,1,11,3\n1,1,11,31\n1,1,11,10-20\n");
  EXPECT_EQ(run.Observations,
            (Texts{"1,1,11=0", "1,1,11=0", "1,1,11=1", "1,1,11=1", "1,1,11=2", "1,1,11=3", "1,1,11=1"}));
  EXPECT_EQ(run.A.Counters.NegativeCount, 1) << "9 is recoded to missing; 25 is in the range named first";
  EXPECT_EQ(run.A.Counters.InvalidCount, 3) << "7.0 is not the text 7 and lies in no range";
}

TEST(DataReader, TopsDependOnTheModelType) {
  const DataRun run(ThreeFacets("Models=\n?,1,?,R9\n?,2,?,B3\n?,3,?,D\n?,4,?,D128\n?,5,?,P\n?,6,?,R\n*"),
                    "1,1-6,11,10,4,2,255,256,10\n1,1-6,11,9,3,1,127,255,9\n1,1-6,11,0,0,0,128,0,0\n");
  EXPECT_EQ(run.Observations,
            (Texts{"1,4,11=1", "1,1,11=9", "1,2,11=3", "1,3,11=1", "1,4,11=0", "1,5,11=255", "1,6,11=9", "1,1,11=0",
                   "1,2,11=0", "1,3,11=0", "1,4,11=1", "1,5,11=0", "1,6,11=0"}));
  EXPECT_EQ(run.A.Counters.InvalidCount, 5);
}

TEST(DataReader, TheFirstStatementThatMatchesWins) {
  const DataRun general(ThreeFacets("Models=\n?,?,?,R9\n1,?,?,D\n*"), "1,1,11,5\n2,1,11,5\n");
  EXPECT_EQ(general.Cells, (std::vector<int>{0, 0}));
  EXPECT_EQ(general.A.Models.Statements[{1}].ModelResponses, 0);
  const DataRun special(ThreeFacets("Models=\n1,?,?,D3\n?,,X,R9\n*"), "1,1,11,5\n2,1,11,5\n2,1,12,5\n");
  EXPECT_EQ(special.Observations, (Texts{"1,1,11=1", "2,0,0=5"})) << "empty and X positions carry no element";
  EXPECT_EQ(special.A.Counters.UnspecifiedCount, 1) << "positions are tested from the last: rater 12 before person 2";
}

TEST(DataReader, TracesTheMatching) {
  DataUser user;
  user.Answers = {"", " f5 "};
  const DataRun run(ThreeFacets("Query=Y\nModels=\n?,2,?,R4\n?,?,?,R4\n*"), "R2,1,1,11,3\n1,1,11,\n1,1,11,3\n", user);
  EXPECT_EQ(user.Questions.size(), 0U);
  EXPECT_EQ(run.User.Questions, Texts(2,
                                      "Press F4 for next match, F5 to discontinue Query=Y, or use Estimation menu "
                                      "(or Enter, 5, Ctrl+C) "));
  const auto traced =
      std::find(run.Said.Messages.begin(), run.Said.Messages.end(), "R2,1,1,11,3 datum: R2,1,1,11,3 ; datum number 1");
  ASSERT_LE(4, run.Said.Messages.end() - traced);
  EXPECT_EQ(traced[1], "R2,1,1,11,3 datum facet 2, element 1: \"1\" did not match \"2\" in model 1");
  EXPECT_EQ(traced[2], "R2,1,1,11,3 matched model 2");
  EXPECT_EQ(traced[3], "1,1,11, datum: 1,1,11, ; datum number 2");
  EXPECT_EQ(traced[4], "1,1,11, no datum: ");
  EXPECT_EQ(traced[5], "Total lines in data file = 3") << "F5 ended the trace";
  EXPECT_EQ(run.Said.Messages[0], "Query=Y in effect!  Data matching displayed:");
  EXPECT_EQ(run.Said.Messages[1], "?,2,?,R4,1 ; active model statement for Query=Yes 1");

  const DataRun batch(ThreeFacets("Query=Y\nModels=?,?,?,R4"), "1,1,11,3\n");
  EXPECT_FALSE(Has(batch.Said.Messages, "Query=Y in effect!  Data matching displayed:"));
  EXPECT_FALSE(batch.A.Settings.QueryOption);
}

TEST(DataReader, AsksTheUserEvery100Lines) {
  std::string data;
  for (int i = 0; i < 1000; ++i) data += "1,1,11,3\n";
  const std::string specification = ThreeFacets("Models=?,?,?,R4");
  EXPECT_EQ(DataRun(specification, data).User.Polls, 10);
  DataUser user;
  user.SecondsPerPoll = 2;
  EXPECT_EQ(DataRun(specification, data, user).Said.Progress, ">...<") << "a mark for more than 5 seconds: 6, 12, 18";
  user.Request = UserRequest::Finish;
  EXPECT_EQ(DataRun(specification, data, user).A.Counters.DataLines, 100);
  user.Request = UserRequest::Stop;
  EXPECT_EQ(DataRun(specification, data, user).Error, "stopped");
}

// Whatever bytes there are: counted or refused, but read to an end, with every response accounted for.
TEST(DataReader, SurvivesAnyBytes) {
  const std::string specification = ThreeFacets(
      "Missing=.\nDelements=NL\nDvalues=2,1,1,1\nModels=\n?,#,X,Mine\n1-3,?,-?,D2\n?,?,?,P\n*\n"
      "Rating scale=Mine,R5,S\n1,,,,a+5-8\n-1,,,,9\n*\n");
  constexpr std::string_view kPieces[] = {"1",   "2",  "3",    "11",  "13",  "0",  ",",  ",", ",",
                                          ",",   " ",  "\t",   "R2,", "1-3", "_5", "\"", "'", "=",
                                          "Ann", "99", "\xFF", "*",   ";;",  "%",  "-",  "."};
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    std::string data;
    for (int line = 0; line < 4; ++line) {
      data += random() % 8 == 0 ? "" : "3,11,2";
      for (auto pieces = random() % 8; pieces > 0; --pieces)
        data +=
            random() % 30 == 0 ? std::string(1, static_cast<char>(random())) : kPieces[random() % std::size(kPieces)];
      data += random() % 10 == 0 ? '\r' : '\n';
    }
    const DataRun run(specification, data);
    const DataCounters& counters = run.A.Counters;
    std::int64_t matched = run.A.Models.UnmatchedResponses + counters.UnspecifiedCount;
    for (const ModelStatement& statement : run.A.Models.Statements) matched += statement.ModelResponses;
    EXPECT_EQ(matched, counters.ResponsesFound + counters.NoReplicationCount) << data;
    EXPECT_LE(counters.ValidResponses, matched);
  }
}

}  // namespace
}  // namespace tessaly
