#include <gtest/gtest.h>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// The statements as text: positions, scale, weight.
std::vector<std::string> Statements(const SpecRun& run) {
  std::vector<std::string> texts;
  for (const ModelStatement& statement : run.A.Models.Statements) {
    std::vector<std::string> fields(statement.ModelField.begin() + 1, statement.ModelField.end());
    texts.push_back(Joined(fields, ","));
  }
  return texts;
}

TEST(Models, BlocksAndSingleLines) {
  const SpecRun block(WithTwoFacets("Models=\n?,-1_2,r3,2\nX,?,M\nModel=#,,x,1,spare\n\n*\nRating=X,R4K\n*\nBeep=Y"));
  EXPECT_EQ(block.Error, "");
  EXPECT_EQ(Statements(block), (std::vector<std::string>{"?,-1-2,R3,2,", "X,?,M,1,", "#,,X,1,SPARE"}));
  const auto& statements = block.A.Models.Statements;
  EXPECT_EQ(statements[{0}].ModelWeight, 2);
  EXPECT_EQ(statements[{0}].ModelLow[{2}], 1);
  EXPECT_EQ(statements[{0}].ModelHigh[{2}], 2);
  EXPECT_TRUE(statements[{0}].Negative({2}));
  EXPECT_FALSE(statements[{0}].Negative({1}));
  EXPECT_FALSE(statements[{1}].HasNegative());
  EXPECT_EQ(statements[{1}].ModelType, ModelType::Missing);
  EXPECT_TRUE(statements[{2}].ModelHasHash);
  EXPECT_EQ(statements[{2}].ModelDefinition.value, 0);
  EXPECT_TRUE(statements[{2}].ModelKeep);
  EXPECT_EQ(statements[{2}].ModelField[0], "R4K");
  EXPECT_EQ(block.A.Scales.RawCategoryLimit, 4);
  EXPECT_TRUE(block.A.Settings.BeepOn);

  const SpecRun lines(WithTwoFacets("Models=?,?,P,0.5\n1,?,B3\nMissing=9"));
  EXPECT_EQ(Statements(lines), (std::vector<std::string>{"?,?,P,0.5,", "1,?,B3,1,"}));
  EXPECT_EQ(lines.A.Settings.MissingCodes.size(), 1U);
  EXPECT_TRUE(lines.A.Scales.PoissonUsed);
  EXPECT_EQ(lines.A.Scales.RawCategoryLimit, 255);

  EXPECT_EQ(Statements(SpecRun(WithTwoFacets(""))), std::vector<std::string>{"?,?,D,1,"});
  EXPECT_FALSE(SpecRun(WithTwoFacets("")).A.Scales.PoissonUsed);
}

TEST(Models, PositionsInUse) {
  const SpecRun run(WithTwoFacets("Models=X,,R\n"));
  EXPECT_FALSE(run.A.Fields.Positions[{1}].PositionInUse);
  EXPECT_TRUE(run.A.Fields.Positions[{2}].PositionInUse) << "an empty position still needs an element in the data";
}

TEST(Models, Failures) {
  const std::pair<const char*, const char*> cases[] = {
      {"?,?,R,1,spare,more",
       "? ? R 1 spare more : more | Error F5 in line 3: More than 5 components in Model= statement"},
      {"?,R", "? R | Error F11 in line 3: All Model= statements must include 2 facet locations + type [+ weight]"},
      {"?,2147483647,R",
       "? 2147483647 R : 2147483647 | Error F23 in line 3: Invalid element number. Must be integers in range 0 - "
       "2147483646"},
      {"?,?,?,R",
       "? ? ? R : R | Error F60 in line 3: Non-numeric weight in Models= specification: \"R\" or wrong number of "
       "facets."},
      {"?,?,Essay",
       "ESSAY | Error F6 in line 3: Invalid scale type (valid are D,R,B,P,M) or scale name in Model= does not match "
       "Rating Scale="},
      {"?,?,R256",
       "R256 | Error F6 in line 3: Invalid scale type (valid are D,R,B,P,M) or scale name in Model= does not match "
       "Rating "
       "Scale="},
  };
  for (const auto& [statement, blamed] : cases)
    EXPECT_EQ(SpecRun(WithTwoFacets(std::string("Models=\n") + statement + "\n*")).Blamed(), blamed);
  EXPECT_EQ(SpecRun("Models=?,D\n").Blamed(),
            "Models=?,D | Error F34 in line 1: Please specify Facets= before this specification");
  EXPECT_EQ(SpecRun(WithTwoFacets("Models=?,?,R,1E+999")).Error, "");
}

TEST(Models, ManyStatementsTakeNoTime) {
  std::string text = "Models=\n";
  for (int i = 0; i < 20000; ++i) text += "?,?,S" + std::to_string(i) + "\n";
  text += "*\n";
  for (int i = 0; i < 20000; ++i) text += "Rating=s" + std::to_string(i) + ",R3\n0,a\n*\n";
  const SpecRun run(WithTwoFacets(text));
  EXPECT_EQ(run.Error, "");
  EXPECT_EQ(run.A.Models.Statements[{19999}].ModelDefinition.value, 19999);
}

TEST(RatingScale, HeaderAndCategories) {
  const SpecRun run(
      WithTwoFacets("Rating scale = Essay, r5, Specific, Keep, , \"My scale\"\n"
                    "0=None,,,\n2, Some, -1.5, anchor, 7 + 9\n3\n-1,,,,x\n5,Full,0.5\n*\n*\n"
                    "Rating=Second,D\nModels=?,?,essay\nX,?,second\n"));
  EXPECT_EQ(run.Error, "");
  const RatingScaleDefinition& scale = run.A.Models.Definitions[{0}];
  EXPECT_EQ(scale.Name, "Essay");
  EXPECT_EQ(scale.Code, "R5");
  EXPECT_TRUE(scale.Specific);
  EXPECT_TRUE(scale.Keep);
  EXPECT_EQ(scale.Subtitle, "My scale");
  ASSERT_EQ(scale.Categories.size(), 7U) << "-1 to 5";
  EXPECT_TRUE(scale.Categories[0].Given);
  EXPECT_EQ(scale.Categories[1].Label, "None");
  EXPECT_EQ(scale.Categories[3].Label, "Some");
  EXPECT_EQ(scale.Categories[3].Value, "-1.5");
  EXPECT_EQ(scale.Categories[3].Flag, 'A');
  EXPECT_EQ(scale.Categories[3].Recode, "7 + 9");
  EXPECT_FALSE(scale.Categories[4].Given);
  EXPECT_EQ(scale.Categories[6].Flag, ' ');
  ASSERT_EQ(scale.Recodes.size(), 3U);
  EXPECT_EQ(scale.Recodes[2].Text, "x");
  EXPECT_EQ(scale.Recodes[2].Target, -1);
  const RatingScaleDefinition& second = run.A.Models.Definitions[{1}];
  EXPECT_FALSE(second.Specific || second.Keep);
  EXPECT_EQ(second.Categories.size(), 2U);
  EXPECT_TRUE(run.A.Models.Statements[{0}].ModelKeep);
}

TEST(RatingScale, Recoding) {
  const SpecRun run(WithTwoFacets("Rating=s,R3\n0,,,,1+5-3+ -2+x\n1,,,,1+-9--5+3-5+5-3+1.5-2.5\n*\n"));
  EXPECT_EQ(run.Error, "");
  std::vector<std::string> rules;
  for (const RecodeRule& rule : run.A.Models.Definitions[{0}].Recodes) {
    rules.push_back(rule.Text + ">" + std::to_string(rule.Target));
    if (rule.IsRange) {
      EXPECT_LT(rule.Low, rule.High);
      rules.back() += "r";
    }
  }
  EXPECT_EQ(rules, (std::vector<std::string>{"1>0", "5-3>0r", "-2>0", "x>0", "-9--5>1r", "3-5>1r", "1.5-2.5>1r"}));
  EXPECT_EQ(run.A.Models.Definitions[{0}].Recodes[4].Low, -9);
}

TEST(RatingScale, Failures) {
  const std::pair<const char*, const char*> cases[] = {
      {"s,R3\n4,label",
       "4,label | Error F15 in line 3: Invalid category in Rating (or partial credit) scale= specification"},
      {"s,R3\n1.5,label",
       "1.5,label | Error F15 in line 3: Invalid category in Rating (or partial credit) scale= specification"},
      {"s,R3\n1,a\n1\n1,b", "1,b | Error F3 in line 5: Duplicate category label"},
      {"s,R3\n-1,,,,8\n_7,,,,9", "_7,,,,9 | Error F3 in line 4: Duplicate category label"},
      {"s,R3\n1,,,,3-x",
       "1,,,,3-x | Error F69 in line 3: Rating Scale= recode range not numeric. Should be number-number"},
      {"s,B",
       "B | Error F6 in line 2: Invalid scale type (valid are D,R,B,P,M) or scale name in Model= does not match Rating "
       "Scale="},
  };
  for (const auto& [block, blamed] : cases)
    EXPECT_EQ(SpecRun(WithTwoFacets(std::string("Rating=") + block + "\n*")).Blamed(), blamed);
}

TEST(RatingScale, EqualNames) {
  const SpecRun run(WithTwoFacets("Rating=x,R4\n*\nRating=w,R2\n*\nRating=X,R9\n*\nModels=?,?,x\n?,?,W"));
  EXPECT_EQ(run.Said.Warnings, std::vector<std::string>{"Warning (12)! Duplicate ratingscale= :X"});
  EXPECT_EQ(run.A.Models.Statements[{0}].ModelDefinition.value, 0);
  EXPECT_EQ(run.A.Models.Statements[{1}].ModelDefinition.value, 1);
}

}  // namespace
}  // namespace tessaly
