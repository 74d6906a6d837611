#include "reports/model_text.h"

#include <gtest/gtest.h>

#include "fixture/analysis_fixture.h"

namespace tessaly {
namespace {

TEST(ModelText, NamesTheElementsOfAScale) {
  const FinishedAnalysis run = RunSpecification(
      "Facets=3\nModels=\n?,-#B,2,Own\n?B,X,1-3,R2K\n*\nRating scale=Own,R2\n*\n"
      "Labels=\n1,P\n1-2\n*\n2,Item\n4,Curse\n5\n*\n3,Rater\n1,Ann\n2,Bob\n*\n"
      "Data=\n1,4,2,0\n2,4,2,1\n1,5,2,1\n2,5,2,0\n1,4,1,0\n2,5,1,1\n");
  ASSERT_TRUE(run.Finished()) << run.Report;
  std::vector<std::string> texts;
  for (const ScaleNumber scale : run.A.Scales.Scales.all()) texts.push_back(ModelText(scale, run.A));
  EXPECT_EQ(texts, (std::vector<std::string>{"?B,X,1-3,R2K", "?,-4B,2,OWN  ;   Rater: Bob  Item: Curse",
                                             "?,-5B,2,OWN  ;   Rater: Bob"}));
}

}  // namespace
}  // namespace tessaly
