#include "data/statement_matcher.h"

#include <gtest/gtest.h>

#include <random>

namespace tessaly {
namespace {

using Statements = Table<StatementNumber, ModelStatement, 0>;

ModelStatement Statement(const std::vector<std::pair<std::int32_t, std::int32_t>>& ranges) {
  ModelStatement statement;
  for (const auto& [low, high] : ranges) {
    statement.ModelLow.add(low);
    statement.ModelHigh.add(high);
  }
  return statement;
}

const std::pair<std::int32_t, std::int32_t> kAny{kAnyElement, kAnyElement};
const std::pair<std::int32_t, std::int32_t> kIgnored{kIgnoredPosition, kIgnoredPosition};

StatementNumber FirstByTrial(const Statements& statements, const std::int32_t* numbers, const ElementIndex* elements) {
  for (const StatementNumber number : statements.all())
    if (MeetStatement(statements[number], numbers, elements).Result != StatementMeeting::Outcome::Mismatch)
      return number;
  return kNoStatement;
}

TEST(StatementMatcher, FindsWhatTryingOneAfterTheOtherFinds) {
  std::mt19937 random(3);
  for (const int count : {0, 1, 2, 64, 65, 511, 512, 513, 1500}) {
    Statements statements;
    for (int i = 0; i < count; ++i) {
      ModelStatement statement;
      for (int position = 0; position < 3; ++position) {
        const auto low = static_cast<std::int32_t>(random() % 300);
        const auto high = low + static_cast<std::int32_t>(random() % 3);
        const bool free = random() % 3 == 0;
        statement.ModelLow.add(free ? (random() % 2 == 0 ? kAnyElement : kIgnoredPosition) : low);
        statement.ModelHigh.add(free ? kAnyElement : high);
      }
      statements.add(statement);
    }
    const StatementMatcher matcher(statements);
    const ElementIndex known[3] = {};
    int matched = 0;
    for (int round = 0; round < 3000; ++round) {
      std::int32_t numbers[3];
      for (std::int32_t& number : numbers) number = static_cast<std::int32_t>(random() % 303);
      const StatementNumber found = matcher.First(numbers);
      ASSERT_EQ(found, FirstByTrial(statements, numbers, known)) << count;
      ElementIndex elements[3] = {};
      for (ElementIndex& element : elements)
        if (random() % 2 == 0) element = kUnspecifiedElement;
      ASSERT_EQ(matcher.FirstToSettle(numbers, elements), FirstByTrial(statements, numbers, elements)) << count;
      matched += found == kNoStatement ? 0 : 1;
    }
    EXPECT_GE(matched, count >= 64 ? 10 : 0) << count;
  }
}

TEST(StatementMatcher, TakesTheWholeNumberLine) {
  Statements statements;
  statements.add(Statement({{0, 0}}));
  statements.add(Statement({{5, kHighestElementNumber}}));
  const StatementMatcher matcher(statements);
  const auto first = [&](std::int32_t number) { return matcher.First(&number).value; };
  EXPECT_EQ(first(0), 0);
  EXPECT_EQ(first(4), -1);
  EXPECT_EQ(first(5), 1);
  EXPECT_EQ(first(kHighestElementNumber), 1);
}

TEST(StatementMatcher, MeetsUnknownElementsFromTheLastPosition) {
  using Outcome = StatementMeeting::Outcome;
  const std::int32_t numbers[] = {7, 2, 3};
  const ElementIndex elements[] = {kUnspecifiedElement, {4}, {5}};
  const auto meet = [&](const ModelStatement& statement) { return MeetStatement(statement, numbers, elements); };
  EXPECT_EQ(meet(Statement({kIgnored, kAny, {3, 3}})).Result, Outcome::Matches);
  const StatementMeeting unspecified = meet(Statement({kAny, {1, 2}, kAny}));
  EXPECT_EQ(unspecified.Result, Outcome::Unspecified);
  EXPECT_EQ(unspecified.Position.value, 1);
  const StatementMeeting mismatch = meet(Statement({kAny, {3, 9}, kAny}));
  EXPECT_EQ(mismatch.Result, Outcome::Mismatch) << "the later position decides before the unknown one is reached";
  EXPECT_EQ(mismatch.Position.value, 2);
}

}  // namespace
}  // namespace tessaly
