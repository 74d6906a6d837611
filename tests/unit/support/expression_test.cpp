#include "support/expression.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

#include "support/failure.h"

namespace tessaly {
namespace {

struct Example {
  const char* Text;
  float Value;
};

void Expect(std::initializer_list<Example> examples) {
  for (const Example& example : examples) EXPECT_EQ(EvaluateExpression(example.Text), example.Value) << example.Text;
}

std::string Repeated(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

TEST(Expression, Numbers) {
  Expect({{"", 0},
          {"  \t", 0},
          {"5", 5},
          {"(5)", 5},
          {"((5))", 5},
          {".5", 0.5f},
          {"5.", 5},
          {"1 . 5", 1.5f},
          {"1 2", 12},
          {"12ABC", 12},
          {"ABC", 0},
          {"1E+2", 100},
          {"1.5E-1", 0.15f},
          {"1d+2", 100},
          {"1E-", 1},
          {"-5", -5},
          {"-.5", -0.5f},
          {"1234567.89", 1234567.875f},
          {"0E+30", 0}});
}

TEST(Expression, OperatorsAndGrouping) {
  Expect({{"50+5", 55},  {"(1+2)", 3},   {"2+3*4", 14},     {"2*3+4", 10}, {"(2+3)*(4+5)", 45}, {"2*(3+4)-1", 13},
          {"10-2+3", 5}, {"10-2-3", 11}, {"8/2*2", 2},      {"8/2/2", 8},  {"2^3^2", 512},      {"2**3*2", 16},
          {"-2^2", 4},   {"-(2)^2", -4}, {"2/(-4)", -0.5f}, {"3+", 3},     {"*5", 0},           {"(3", 3},
          {"(3+(4", 4},  {"2(3)", 3},    {"()", 0},         {"1E++2", 3}});
}

TEST(Expression, PairsOfOperators) {
  Expect({{"--5", 5}, {"---5", -5}, {"1--5", 6}, {"1-+5", -4}, {"1+-5", -4}, {"1++5", 6}, {"3+*5", 8}, {"+-2^2", 4}});
  for (const char* failing : {"2*-3", "2*+3", "2* *3", "2/-4", "2^-1", "2***3", "1-*5", "1-/5", "1-^5"})
    EXPECT_EQ(EvaluateExpression(failing), 0) << failing;
}

TEST(Expression, FailuresAreZero) {
  for (const char* failing : {"1E2", "7+1D", "1/0", "4+1/(2-2)", "(0-8)^.5", "0^(-1)", "1.2.3", "1E+2.5", "1E+1E+1",
                              ".", "E+2", "3)", "3))", "(1)(2)", "1E+38*10", "1E+50E+2"})
    EXPECT_EQ(EvaluateExpression(failing), 0) << failing;
}

TEST(Expression, SizesOfTheEvaluator) {
  const auto sum = [](int terms) { return Repeated("1+", terms - 1) + "1"; };
  EXPECT_EQ(EvaluateExpression(sum(12)), 12);
  EXPECT_THROW(EvaluateExpression(sum(13)), Halt);
  EXPECT_THROW(EvaluateExpression(sum(14)), Halt);
  EXPECT_EQ(EvaluateExpression(std::string(95, '0') + "5"), 5);
  EXPECT_THROW(EvaluateExpression(std::string(96, '0') + "5"), Halt);
  EXPECT_EQ(EvaluateExpression(std::string(98, '(') + "5"), 5);
  EXPECT_THROW(EvaluateExpression(std::string(99, '(') + "5"), Halt);
  EXPECT_EQ(EvaluateExpression(std::string(24, '(') + "5" + std::string(24, ')')), 5) << "26 slots";
  EXPECT_EQ(EvaluateExpression(std::string(25, '(') + "5" + std::string(25, ')')), 0) << "27 slots";
  // The slot that is referred to by two equal letters is one like any other.
  EXPECT_EQ(EvaluateExpression(std::string(19, '(') + "5" + std::string(19, ')') + "*2"), 10);
  EXPECT_THROW(EvaluateExpression("1E+39"), Halt);
  EXPECT_THROW(EvaluateExpression("0E+400"), Halt);
  try {
    EvaluateExpression(std::string(40, '9') + std::string(200, ' '));
    FAIL();
  } catch (const Halt& error) {
    EXPECT_EQ(error.Argument, "Number too large in expression: " + std::string(40, '9') + std::string(60, ' '));
  }
}

/// A random expression with all its parentheses, and its value by plain single arithmetic.
struct Tree {
  std::string Text;
  float Value;
};

Tree RandomTree(std::mt19937& random, int depth) {
  if (depth == 0 || random() % 4 == 0) {
    const int number = static_cast<int>(random() % 90) + 1;
    return {std::to_string(number), float(number)};
  }
  const Tree left = RandomTree(random, depth - 1);
  const Tree right = RandomTree(random, depth - 1);
  const char op = "+-*"[random() % 3];
  const float value = op == '+'   ? left.Value + right.Value
                      : op == '-' ? left.Value - right.Value
                                  : left.Value * right.Value;
  return {"(" + left.Text + op + right.Text + ")", value};
}

TEST(Expression, AgreesWithPlainArithmetic) {
  std::mt19937 random(7);
  for (int i = 0; i < 2000; ++i) {
    const Tree tree = RandomTree(random, 3);
    if (std::count(tree.Text.begin(), tree.Text.end(), '(') > 5) continue;
    ASSERT_EQ(EvaluateExpression(tree.Text), tree.Value) << tree.Text;
  }
}

TEST(Expression, SurvivesAnyText) {
  constexpr std::string_view kPieces = "0123456789..++--**/^(())E+D- \tV\x80\xFF";
  std::mt19937 random(11);
  for (int i = 0; i < 30000; ++i) {
    std::string text(random() % 125, ' ');
    for (char& c : text) c = kPieces[random() % kPieces.size()];
    try {
      ASSERT_TRUE(std::isfinite(EvaluateExpression(text))) << text;
    } catch (const Halt& error) {
      ASSERT_NE(error.Argument.find(text.substr(0, 100)), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace tessaly
