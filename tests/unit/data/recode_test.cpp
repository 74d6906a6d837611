#include "data/recode.h"

#include <gtest/gtest.h>

#include <random>

#include "support/number_text.h"

namespace tessaly {
namespace {

std::optional<std::int32_t> FirstRange(const std::vector<RecodeRule>& rules, double value) {
  for (const RecodeRule& rule : rules)
    if (rule.IsRange && value >= rule.Low && value <= rule.High) return rule.Target;
  return {};
}

TEST(RecodeTable, FindsTheFirstRangeThatHoldsANumber) {
  std::mt19937 random(5);
  const auto halves = [&random](int below) { return static_cast<double>(random() % static_cast<unsigned>(below)) / 2; };
  for (const int count : {1, 2, 5, 40}) {
    std::vector<RecodeRule> rules;
    for (int i = 0; i < count; ++i) {
      const double low = halves(200) - 50;
      rules.push_back({"range" + BareText(i), low, low + halves(i % 3 == 0 ? 60 : 3), true, i - 1});
      rules.push_back({"text" + BareText(i), 0, 0, false, 100});
    }
    const RecodeTable table(rules);
    for (int quarter = -240; quarter <= 400; ++quarter) {
      const double value = quarter / 4.0;
      EXPECT_EQ(table.Target(BareText(quarter * 25) + "E-2"), FirstRange(rules, value)) << value << " of " << count;
    }
  }
}

}  // namespace
}  // namespace tessaly
