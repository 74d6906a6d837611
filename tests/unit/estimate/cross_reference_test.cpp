#include "estimate/cross_reference.h"

#include <gtest/gtest.h>

#include "support/failure.h"

namespace tessaly {
namespace {

/// Facets 1, 2 and 1 in three positions; elements 1 to 3 of facet 1, 4 and 5 of facet 2.
class CrossReferenceTest : public testing::Test {
 protected:
  static FieldMap Fields() {
    FieldMap fields;
    for (const std::int32_t facet : {1, 2, 1}) fields.Positions.add({{facet}, {1}, true});
    return fields;
  }
  void Add(int first, int second, int third) {
    Observation observation;
    observation.Elements.resize(3);
    observation.Elements[0].CurrentElement = {first};
    observation.Elements[1].CurrentElement = {second};
    observation.Elements[2].CurrentElement = {third};
    References.Add(observation);
  }
  /// The entries of an element for both facets.
  std::pair<int, int> Of(int element) const {
    return {References.Entry({element}, {1}).value, References.Entry({element}, {2}).value};
  }

  ElementCrossReference References{5, 2, Fields()};
};

TEST_F(CrossReferenceTest, NamesTheOnlyPartnerOfEachFacet) {
  Add(1, 4, 0);
  Add(1, 4, 0);
  EXPECT_EQ(Of(1), std::pair(0, 4));
  EXPECT_EQ(Of(4), std::pair(1, 0));
  Add(2, 4, 0);
  EXPECT_EQ(Of(4), std::pair(-1, 0));
  EXPECT_EQ(Of(2), std::pair(0, 4));
  Add(1, 4, 0);
  EXPECT_EQ(Of(4), std::pair(-1, 0)) << "several for good";
  EXPECT_EQ(Of(5), std::pair(0, 0));

  Add(3, 0, 2);
  EXPECT_EQ(Of(3), std::pair(2, 0)) << "another element of its own facet";
  EXPECT_EQ(Of(2), std::pair(3, 4));
  Add(0, 5, 3);
  EXPECT_EQ(Of(5), std::pair(3, 0));
  EXPECT_EQ(Of(3), std::pair(2, 5));
}

TEST(CrossReference, TooLargeATableIsRefusedBeforeItTakesMemory) {
  try {
    const ElementCrossReference references(4000000, 255, {});
    FAIL();
  } catch (const Halt& halt) {
    EXPECT_EQ(halt.Code, FailureCode::TooManyElements);
    EXPECT_EQ(halt.Argument, " 4000000");
  }
}

}  // namespace
}  // namespace tessaly
