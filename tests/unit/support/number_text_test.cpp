#include "support/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tessaly {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();

TEST(GeneralText, DigitsSignAndExponentForm) {
  EXPECT_EQ(GeneralText(0.25f), " .25");
  EXPECT_EQ(GeneralText(-0.05f), "-.05");
  EXPECT_EQ(GeneralText(-0.0f), " 0");
  EXPECT_EQ(GeneralText(0.1f), " .1") << "a single has 7 digits";
  EXPECT_EQ(GeneralText(16777216.0f), " 1.677722E+07");
  EXPECT_EQ(GeneralText(std::numeric_limits<double>::quiet_NaN()), " ***");
  EXPECT_EQ(GeneralText(-std::numeric_limits<float>::infinity()), " ***");
  EXPECT_EQ(GeneralText(9999999.0f), " 9999999");
  EXPECT_EQ(GeneralText(1.0 / 3), " .333333333333333");
  EXPECT_EQ(GeneralText(100.0), " 100");
  EXPECT_EQ(GeneralText(-123456789012345.0), "-123456789012345");
  EXPECT_EQ(GeneralText(1.234e15), " 1.234E+15");
  EXPECT_EQ(GeneralText(999999999999999.9), " 1E+15") << "the rounded value decides the form";
  EXPECT_EQ(GeneralText(5e-3f), " 5E-03");
  EXPECT_EQ(GeneralText(0.01f), " .01");
  EXPECT_EQ(GeneralText(1e-300), " 1E-300");
  EXPECT_EQ(GeneralText(std::int64_t{-9223372036854775807} - 1), "-9223372036854775808");
}

TEST(FormatNumber, RoundsPadsAndOverflows) {
  EXPECT_EQ(FormatNumber(0, 7, 2), "    .00");
  EXPECT_EQ(FormatNumber(0.25, 5, 2), "  .25");
  EXPECT_EQ(FormatNumber(0.05, 5, 2), "  .05");
  EXPECT_EQ(FormatNumber(-0.001, 5, 2), "  .00") << "no sign for what rounds to zero";
  EXPECT_EQ(FormatNumber(0.125, 5, 2), "  .13");
  EXPECT_EQ(FormatNumber(-2.5, 4, 0), "  -3");
  EXPECT_EQ(FormatNumber(1234567.89, 5, 2), "123E4");
  EXPECT_EQ(FormatNumber(123.456, 5, 2), "123.4") << "cut, not rounded again";
  EXPECT_EQ(FormatNumber(123456, 4, 0), "12E4");
  EXPECT_EQ(FormatNumber(12345, 2, 0), "1*");
  EXPECT_EQ(FormatNumber(12, 1, 0), "*");
  EXPECT_EQ(FormatNumber(12, 0, 0), "");
  EXPECT_EQ(FormatNumber(-123.45, 6, 2), "-123.4");
  EXPECT_EQ(FormatNumber(123.45, 3, 2), "123") << "only the point and decimals are lost";
  EXPECT_EQ(FormatNumber(1e12, 4, 0), "10E1") << "of a count of 10 the first digit";
  EXPECT_EQ(FormatNumber(1, 1, 2), "1.0") << "widened to decimals and point";
  EXPECT_EQ(FormatNumber(1.5, -6, -1), "   1.5");
  EXPECT_EQ(FormatNumber(1.234e17, 20, 1), "123400000000000000.0");
  EXPECT_EQ(FormatNumber(123456789012345678.0, 18, 0), "123456789012346000") << "15 digits, then zeros";
  EXPECT_EQ(FormatNumber(-kInfinite, 5, 2), "-17E3") << "a power above 300";
  EXPECT_EQ(FormatNumber(std::nan(""), 4, 1), "****");
  EXPECT_EQ(FormatSingle(0.145f, 4, 2), " .14") << "the single lies below 0.145";
  EXPECT_EQ(FormatNumber(0.145, 4, 2), " .15") << "0.145 times 10 twice is 14.5";
}

TEST(FormatNumber, IsWithinHalfALastPlace) {
  std::mt19937 random(20240501);
  for (int i = 0; i < 20000; ++i) {
    const int decimals = static_cast<int>(random() % 6);
    const double value = (double(random()) / 4294967296.0 - 0.5) * std::pow(10.0, random() % 8);
    const std::string text = FormatNumber(value, 20, decimals);
    ASSERT_EQ(text.size(), 20u);
    ASSERT_TRUE(IsNumeric(text)) << text;
    ASSERT_NEAR(LeadingNumber(text), value, 0.50001 * std::pow(10.0, -decimals)) << text;
  }
}

TEST(NumberText, ShortForms) {
  EXPECT_EQ(TrimmedNumber(12), "12");
  EXPECT_EQ(TrimmedNumber(-3), "-3");
  EXPECT_EQ(TrimmedNumber(2.26), " 2.3");
  EXPECT_EQ(OneDecimal(2.25), " 2.2");
  EXPECT_EQ(OneDecimal(0.00001), " .0");
  EXPECT_EQ(OneDecimal(-0.0499999), ".0") << "exponent form";
  EXPECT_EQ(OneDecimal(1e20), ".0");
  EXPECT_EQ(Fixed2(0.05f), ".05");
  EXPECT_EQ(Fixed2(1234.5f), "1234.50");
  EXPECT_EQ(Fixed2(-0.5f), "-.50");
  EXPECT_EQ(Fixed2(0.125f), ".12") << "ties to even";
  EXPECT_EQ(Fixed2(0), ".00");
  EXPECT_EQ(Fixed2(2e6f), "?.??");
  EXPECT_EQ(Fixed4(2e6f), "???");
  EXPECT_EQ(Fixed4(999999.0f), "999999.0000") << "beyond 32 bits";
  EXPECT_EQ(Fixed2(std::nanf("")), "?.??");
  EXPECT_EQ(FixedDecimals(4.6f, 0), "5.");
  EXPECT_EQ(PlainNumber(1.5f), "1.5");
  EXPECT_EQ(PlainNumber(-0.25f), "-.25");
  EXPECT_EQ(PlainNumber(0.00123f), "0.00123");
  EXPECT_EQ(PlainNumber(-0.00123f), "-0.00123");
  EXPECT_EQ(PlainNumber(1e-30f), "0");
  EXPECT_EQ(ShiftLeftOne("  1.5"), " 1.5 ");
  EXPECT_EQ(ShiftLeftOne("1.5"), "1.5");
  EXPECT_EQ(ShiftLeftOne(""), "");
}

TEST(NumberText, RoundingToIntegers) {
  EXPECT_EQ(RoundToInteger(40000), 32760);
  EXPECT_EQ(RoundToInteger(-40000), -32760);
  EXPECT_EQ(RoundToInteger(32765), 32760);
  EXPECT_EQ(RoundToInteger(2.5f), 3);
  EXPECT_EQ(RoundToInteger(-2.5f), -3);
  EXPECT_EQ(RoundToInteger(0.49999997f), 0);
  EXPECT_EQ(RoundToLong(-2.5), -3);
  EXPECT_EQ(RoundToLong(1e300), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(RoundToLong(std::nan("")), 0);
}

TEST(NumberText, ReadingNumbers) {
  EXPECT_EQ(LeadingNumber("  -12.5abc"), -12.5);
  EXPECT_EQ(LeadingNumber("+.5"), 0.5);
  EXPECT_EQ(LeadingNumber("1e2"), 100);
  EXPECT_EQ(LeadingNumber("1E+"), 1);
  EXPECT_EQ(LeadingNumber("1.2.3"), 1.2);
  for (const char* none : {"", " ", "-", ".", "+.e5", "abc", "--5"}) EXPECT_EQ(LeadingNumber(none), 0) << none;
  const double largest = std::numeric_limits<double>::max();
  EXPECT_EQ(LeadingNumber(std::string(400, '9')), largest);
  EXPECT_EQ(LeadingNumber("-1E99999999999999999999"), -largest);
  EXPECT_EQ(LeadingNumber("1E-99999999999999999999"), 0);
  EXPECT_EQ(LeadingNumber("0." + std::string(400, '0') + "1E+5"), 0);
  EXPECT_EQ(LeadingNumber(std::string(700, '9') + "E-5"), largest);

  for (const char* number : {"1", " -1.5 ", "5.", ".5", "1E5", "+3"}) EXPECT_TRUE(IsNumeric(number)) << number;
  for (const char* other : {"", " ", ".", "1 2", "1,5", "1a", "E5", "1E", "-"}) EXPECT_FALSE(IsNumeric(other)) << other;
}

TEST(ParseInt, ValueOrProblem) {
  using Problem = IntegerReading::Problem;
  const auto expect = [](std::string_view text, std::int32_t value, Problem trouble) {
    const IntegerReading reading = ParseInt(text, 100);
    EXPECT_EQ(reading.Value, value) << text;
    EXPECT_EQ(reading.Trouble, trouble) << text;
  };
  expect("7", 7, Problem::None);
  expect("-7", 7, Problem::None);
  expect("7 apples", 7, Problem::None);
  expect("100", 100, Problem::None);
  expect("101", 0, Problem::NumberInvalid);
  expect(std::string(400, '9'), 0, Problem::NumberInvalid);
  expect("", 0, Problem::NonNumeric);
  expect("x", 0, Problem::NonNumeric);
  expect("x0", 0, Problem::None);
  expect("0", 0, Problem::None);
  expect("2.5", 2, Problem::NonInteger);
}

}  // namespace
}  // namespace tessaly
