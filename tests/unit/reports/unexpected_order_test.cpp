#include "reports/unexpected_order.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaly {
namespace {

std::vector<std::string> Wordings(std::string_view usort) {
  std::vector<std::string> wordings;
  for (const UnexpectedOrder& order : ParseUsort(usort)) wordings.push_back(order.Wording);
  return wordings;
}

TEST(ParseUsort, OneOrderOrSeveralInParentheses) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(Wordings("u"), Texts({"u"}));
  EXPECT_EQ(Wordings("u,1,x"), Texts({"u,1,x"}));
  EXPECT_EQ(Wordings("(u)(1,2)"), Texts({"u", "1,2"}));
  EXPECT_EQ(Wordings("(u),(1,2)"), Texts({"u", "1,2"}));
  EXPECT_EQ(Wordings(""), Texts({""}));  // the order of the data columns
  EXPECT_EQ(Wordings("((((u"), Texts({"u"}));
  EXPECT_EQ(Wordings(")))(u))(("), Texts({"", "u"}));
  EXPECT_EQ(Wordings("u,N"), Texts());
  EXPECT_EQ(Wordings("(u)(n)"), Texts());
}

struct Rated {
  std::int32_t Score;
  float Expected;
  float ZScore;
  std::int32_t Element;
};

/// The elements of these responses in an order. They stand in data column 2; column 1 belongs to no position.
std::string Ordered(const std::vector<Rated>& ratings, std::string_view usort) {
  FieldMap fields;
  fields.Columns.add({});
  fields.Columns.add({FacetNumber{1}, PositionNumber{1}, {}, {0}, 0, 0});
  fields.Positions.add({FacetNumber{1}, ColumnNumber{2}, true});
  std::vector<UnexpectedResponse> responses;
  for (const Rated& rating : ratings)
    responses.push_back({rating.Score, rating.Score, rating.Expected, rating.ZScore, 1, {{rating.Element}}});
  User user;
  RunControl control(user);
  SortUnexpected(ParseUsort(usort).front(), fields, control, responses);
  std::string elements;
  for (const UnexpectedResponse& response : responses) elements += static_cast<char>('0' + response.Elements[0].value);
  return elements;
}

TEST(SortUnexpected, EveryKeyBothWays) {
  const std::vector<Rated> ratings = {{1, 3.0F, -3.0F, 4}, {5, 1.0F, 4.0F, 2}, {2, 2.5F, -2.0F, 1}, {4, 0.5F, 3.5F, 3}};
  for (const char letter : {'S', 'Z', 'F', 'T'}) EXPECT_EQ(Ordered(ratings, std::string(1, letter)), "4132");
  for (const char letter : {'R', 'Y'}) EXPECT_EQ(Ordered(ratings, std::string(1, letter)), "4132");
  for (const char letter : {'E', 'P'}) EXPECT_EQ(Ordered(ratings, std::string(1, letter)), "3214");
  for (const char letter : {'X', 'V', 'C', 'O', 'D'}) EXPECT_EQ(Ordered(ratings, std::string(1, letter)), "4132");
  EXPECT_EQ(Ordered(ratings, "U"), "1432");
  EXPECT_EQ(Ordered(ratings, "u"), "2341");
  EXPECT_EQ(Ordered(ratings, "e"), "4123");
  EXPECT_EQ(Ordered(ratings, "r"), "2314");
  EXPECT_EQ(Ordered(ratings, "2"), "1234");
  // Column 1 has no elements, 3 does not exist, ? is no key: the data columns decide.
  for (const char* const nothing : {"1", "3", "?", "99999999999", ""}) EXPECT_EQ(Ordered(ratings, nothing), "1234");
}

TEST(SortUnexpected, WhatPrintsAlikeIsEqual) {
  const std::vector<Rated> ratings = {{1, 1.52F, 3.01F, 3}, {1, 1.51F, 3.02F, 2}, {1, 1.46F, -3.04F, 1}};
  EXPECT_EQ(Ordered(ratings, "u"), "123");
  EXPECT_EQ(Ordered(ratings, "z"), "231");
  EXPECT_EQ(Ordered(ratings, "e,2"), "123");
  EXPECT_EQ(Ordered(ratings, "x,Z"), "123");
}

TEST(UnexpectedList, KeepsTheWorst) {
  UnexpectedList list(2, 3);
  Observation obs;
  obs.Elements.resize(1);
  ObservationFit fit;
  for (const float z : {1.9F, -2.5F, 9.0F, 2.5F, -9.0F, 2.0F, 9.0F, -2.6F}) {
    ++obs.ObservationIndex;
    fit.StandardizedResidual = z;
    list.AddUnexpected(obs, fit);
  }
  User user;
  RunControl control(user);
  std::vector<std::pair<float, std::int64_t>> kept;
  for (const UnexpectedResponse& response : list.Sorted(control))
    kept.emplace_back(response.ZScore, response.ObservationIndex);
  // Of equal ones the positive, then the earlier.
  const std::vector<std::pair<float, std::int64_t>> worst = {{9.0F, 3}, {9.0F, 7}, {-9.0F, 5}};
  EXPECT_EQ(kept, worst);
}

}  // namespace
}  // namespace tessaly
