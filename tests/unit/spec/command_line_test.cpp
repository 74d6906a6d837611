#include <gtest/gtest.h>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

using Words = std::vector<std::string>;

TEST(CommandLine, FileNamesAndExtraSpecifications) {
  const CommandLine line =
      ReadCommandLine(Words{"spec.txt", "Title=My run", "out.txt", "batch=yes", "\"my", "anchors.txt\"",
                            "\"res.txt\"\"graph", "file\"", "Iterations=3; note", "lost=1"});
  EXPECT_EQ(line.FileNames,
            (std::array<std::string, 5>{"spec.txt", "out.txt", "my anchors.txt", "res.txt", "graph file"}));
  EXPECT_EQ(line.ExtraSpecs, (Words{"Title=My run", "batch=yes", "Iterations=3"}));
  EXPECT_TRUE(line.Batch);
  EXPECT_TRUE(line.Comments.empty());

  EXPECT_FALSE(ReadCommandLine(Words{"Batch=No", "Bat.txt"}).Batch);
  EXPECT_EQ(ReadCommandLine(Words{"a", ";;", "second", "try"}).Comments, Words{"a ;; second try"});
}

TEST(CommandLine, Failures) {
  const auto failure = [](const Words& words) {
    try {
      ReadCommandLine(words);
    } catch (const Halt& halt) {
      return halt.Code;
    }
    return FailureCode::None;
  };
  EXPECT_EQ(failure({"\"spec", "file"}), FailureCode::MissingQuote);
  EXPECT_EQ(failure({"1", "2", "3", "4", "5"}), FailureCode::None);
  EXPECT_EQ(failure({"1", "2", "3", "4", "5", "6"}), FailureCode::ExtraSpecificationExpected);
}

TEST(CommandLine, GoesBeforeTheFile) {
  const SpecRun run(WithTwoFacets("Title=File\nIterations=9\nOutput=file.txt\nData=f.csv"),
                    {"spec.txt", "command.txt", "Title=My run", "Data=c.csv", ";;x"});
  EXPECT_EQ(run.Error, "");
  EXPECT_EQ(run.A.Settings.SpecFileName, "spec.txt");
  EXPECT_EQ(run.A.Settings.Title, "My run 2020-02-29 12:00:00");
  EXPECT_EQ(run.A.Settings.OutputFileName, "command.txt");
  EXPECT_EQ(run.A.Settings.DataFileName, "c.csv");
  EXPECT_EQ(run.A.Settings.IterationsLimit, 9);
  EXPECT_EQ(run.Said.Messages.front(), "Extra specifications: Title=My run Data=c.csv");
  EXPECT_EQ(run.A.SpecComments,
            (Words{"spec.txt command.txt Title=My run Data=c.csv ;;x", "Title=File", "Output=file.txt"}));
}

TEST(CommandLine, ExtraSpecificationsHaveNoBlocks) {
  for (const char* word : {"Models=?,?,R", "Labels=Nobuild", "Rating=x,R3", "Glabel=", "Dvalues=*", "Esubtotals="}) {
    const SpecRun run(WithTwoFacets(""), {"Facets=2", word});
    EXPECT_EQ(run.Blamed(),
              std::string(word) + " | Error F18: Extra specification is not specification=value or is invalid");
  }
  EXPECT_EQ(SpecRun(WithTwoFacets(""), {"3=4"}).Blamed(), "3=4 | Error F1: \"Specification=value\" expected");
  const SpecRun oneLiners(WithTwoFacets(""), {"Facets=2", "Glabel=1,5,Old", "Dvalues=2,1", "Data="});
  EXPECT_EQ(oneLiners.Error, "");
  EXPECT_EQ(oneLiners.A.GroupLabels.at({1, 5}), "Old");
  EXPECT_EQ(oneLiners.A.Fields.Columns[{2}].DvalueText, "1");
  EXPECT_FALSE(oneLiners.A.Settings.InlineData);
}

}  // namespace
}  // namespace tessaly
