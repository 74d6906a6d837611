#include "data/model_cells.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "unit/data/data_run.h"

namespace tessaly {
namespace {

std::vector<int> ScalesOfCells(const Analysis& analysis) {
  std::vector<int> scales;
  for (const ModelCell& cell : analysis.Models.Cells) scales.push_back(cell.CellScale.value);
  return scales;
}

TEST(ModelCells, StatementsShareTheScaleOfAGeneralDefinition) {
  const DataRun run(ThreeFacets("Models=\n?,1,?,M\n?,2,?,Shared\n?,3,?,Own\n?,4,?,R4\n?,5,?,shared,2\n?,6,?,Own\n"
                                "?,7,?,R4\n*\nRating scale=Shared,R3\n*\nRating scale=Own,B2,Specific\n*"),
                    "1,1-7,11,1,1,1,1,1,1,1\n");
  EXPECT_EQ(run.Cells, (std::vector<int>{0, 1, 2, 3, 4, 5})) << "no cell for M; the others in statement order";
  EXPECT_EQ(ScalesOfCells(run.A), (std::vector<int>{0, 1, 2, 0, 3, 4}));
  EXPECT_EQ(run.A.Scales.CategoryRawCount({0}, 1), 2);
  const Scale& shared = run.A.Scales.Scales[{0}];
  EXPECT_EQ(shared.ScaleTopCategory, 3);
  EXPECT_EQ(shared.ScaleModel.value, 1);
  EXPECT_EQ(shared.ScaleCell.value, 3) << "the last cell that points at it";
  EXPECT_EQ(run.A.Scales.Scales[{1}].ScaleTopCategory, 2);
  EXPECT_EQ(run.A.Models.Statements[{0}].ModelFirstCell, kNoCell);
}

TEST(ModelCells, OneCellForEachElementOfAHashPosition) {
  const DataRun run(ThreeFacets("Models=\n?,#4-9,?,Shared\n?,?,13,Shared\n?,?,?,D3\n*\nRating scale=Shared,R3\n*"),
                    "1,6,11,1\n1,4,11,2\n2,6,11,3\n1,1,13,3\n1,1,11,3\n1,0,11,2\n");
  EXPECT_EQ(run.Cells, (std::vector<int>{2, 3, 2, 0, 1, 1})) << "statements without # have the first cells";
  EXPECT_EQ(ScalesOfCells(run.A), (std::vector<int>{0, 1, 2, 3})) << "# cells never share";
  EXPECT_EQ(run.A.Models.Statements[{0}].ModelFirstCell, kSeveralCells);
  EXPECT_EQ(run.A.Models.Statements[{1}].ModelFirstCell, CellNumber{0});
  const ElementIndex item6 = run.A.Facets[{2}].FacetFirstElement + 5;
  EXPECT_EQ(run.A.Elements.ElementModel[item6], CellNumber{2});
  EXPECT_EQ(run.A.Elements.ElementModel[item6 + 1], kNoCell);
  EXPECT_EQ(std::vector<ElementIndex>(run.A.Models.CellElements.begin() + 6, run.A.Models.CellElements.begin() + 9),
            (std::vector<ElementIndex>{kNoElement, item6, kNoElement}));

  const DataRun null(ThreeFacets("Models=?,#,?,R3"), "1,0,11,1\n1,1,11,2\n2,0,11,3\n");
  EXPECT_EQ(null.Cells, (std::vector<int>{0, 1, 0})) << "the null element has a cell of its own";
}

TEST(ModelCells, EveryCombinationOfTwoHashPositionsHasACell) {
  std::mt19937 random(11);
  std::string data;
  std::vector<int> expected;
  std::map<std::vector<unsigned long>, int> cells;
  for (int i = 0; i < 500; ++i) {
    const auto person = 1 + random() % 5;
    const auto item = 1 + random() % 9;
    const auto statement = person > 3 ? 1UL : 0UL;
    data += std::to_string(person) + "," + std::to_string(item) + "," + (i % 2 == 0 ? "11" : "13") + ",1\n";
    const std::vector<unsigned long> key{statement, statement == 0 ? person : 0, item};
    expected.push_back(cells.emplace(key, static_cast<int>(cells.size())).first->second);
  }
  const DataRun run(ThreeFacets("Models=\n#1-3,#,?,R9\n?,#,?,R9\n*"), data);
  EXPECT_EQ(run.Cells, expected);
  EXPECT_EQ(run.A.Elements.ElementModel[run.A.Facets[{2}].FacetFirstElement], kSeveralCells);
}

}  // namespace
}  // namespace tessaly
