#include "support/sort_keys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

#include "support/failure.h"

namespace tessaly {
namespace {

std::string FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const FatalError& error) {
    return error.Text;
  }
  return "none";
}

TEST(SortKeys, HexadecimalPacking) {
  EXPECT_EQ(MKIhex(258), "0201");
  EXPECT_EQ(MKIhex(-2), "FEFF");
  EXPECT_EQ(MKLhex(0x0A0B0C0D), "0D0C0B0A");
  EXPECT_EQ(MKShex(1.0f), "0000803F");
  EXPECT_EQ(CVIhex("FEFF"), -2);
  EXPECT_EQ(CVLhex(MKLhex(-2147483647)), -2147483647);
  EXPECT_EQ(SwapInteger("0201"), "0102");
  EXPECT_EQ(SwapLong("0D0C0B0A"), "0A0B0C0D");
  EXPECT_EQ(FailureOf([] { SwapLong("0D0C"); }), "Failure (1)! Swapl$ not 8 bytes: 4");
  EXPECT_EQ(FailureOf([] { SwapInteger(""); }), "Failure (2)! iSwap$ not 4 bytes: 0");
  EXPECT_EQ(FailureOf([] { CVIhex("12G4"); }), "Failure (10)! Illegal Function Call for CVIhex of: 12G4");
  EXPECT_EQ(FailureOf([] { CVLhex("123"); }), "Failure (11)! Illegal Function Call for CVLhex of: 123");
}

TEST(SortKeys, FloatKeysSortAsTheirValues) {
  EXPECT_EQ(FloatKey(0), "100000000");
  EXPECT_EQ(FloatKey(-0.0f), "100000000");
  EXPECT_LT(FloatKey(-2), FloatKey(-1));
  std::vector<float> values = {-3e38f, -2, -1, -1e-30f, 0, 1e-38f, 1, 3e38f};
  std::mt19937 random(1);
  while (values.size() < 2000) {
    const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (std::isnormal(value)) values.push_back(value);
  }
  std::sort(values.begin(), values.end());
  for (std::size_t i = 1; i < values.size(); ++i) ASSERT_LE(FloatKey(values[i - 1]), FloatKey(values[i])) << values[i];
}

TEST(SortKeys, ShellSort) {
  for (std::int32_t n = 0; n < 3000; ++n) {
    const double gap = std::trunc(std::pow(3.0, std::trunc(std::log(2.0 * n + 0.1) / std::log(3.0))) / 2);
    ASSERT_EQ(ShellStart(n), std::max(static_cast<std::int32_t>(gap), 1)) << n;
  }
  std::mt19937 random(2);
  for (std::size_t n : {0u, 1u, 2u, 3u, 14u, 1000u}) {
    std::vector<std::size_t> items(n);
    for (std::size_t& item : items) item = random() % 500;
    std::vector<std::size_t> expected = items;
    std::sort(expected.begin(), expected.end());
    ShellSort(items, std::greater<>());
    EXPECT_EQ(items, expected);
  }
}

TEST(SortKeys, StringsOfOneLengthInBinaryOrder) {
  std::vector<std::string> keys = {"b1",
                                   "\xE4"
                                   "1",
                                   "a2", "Z9", "a1"};
  SortStrings(keys, "", [] {});
  EXPECT_EQ(keys, (std::vector<std::string>{"Z9", "a1", "a2", "b1",
                                            "\xE4"
                                            "1"}));
  keys.push_back("abc");
  EXPECT_EQ(FailureOf([&] { SortStrings(keys, "Failure (3)! Sort length error.", [] {}); }),
            "Failure (3)! Sort length error.");
}

TEST(SortKeys, BinaryKeysSortAsTheirNumbers) {
  const auto keyOf = [](auto value) {
    std::string key = "k";
    AppendKey(key, value);
    return key;
  };
  EXPECT_EQ(keyOf(0x01A2B3C4u), "k\x01\xA2\xB3\xC4");
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const std::vector<float> rising = {-kInfinity, -3e38f, -2,     -1.5f, -1e-38f, -1e-40f, -1e-45f,  0,
                                     1e-45f,     1e-40f, 1e-38f, 1.5f,  2,       3e38f,   kInfinity};
  for (std::size_t i = 1; i < rising.size(); ++i) EXPECT_LT(keyOf(rising[i - 1]), keyOf(rising[i])) << rising[i];
  EXPECT_EQ(keyOf(-0.0f), keyOf(0.0f));
  EXPECT_EQ(keyOf(-0.0f).size(), 5u);
}

}  // namespace
}  // namespace tessaly
