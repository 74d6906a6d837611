#include "output/cell_line.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace tessaly {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// A value, its neighbours, and all of them with the other sign.
void AddAround(float value, std::vector<float>& values) {
  for (const float near : {value, std::nextafter(value, kInfinity), std::nextafter(value, -kInfinity)}) {
    values.push_back(near);
    values.push_back(-near);
  }
}

/// What rounding, signs and widths could trip over, and some of everything.
std::vector<float> AwkwardValues(int decimals, std::mt19937& random) {
  std::vector<float> values{NAN, kInfinity, -kInfinity};
  for (const float end : {0.0F, std::numeric_limits<float>::min(), std::numeric_limits<float>::max()})
    AddAround(end, values);
  for (int power = -12; power <= 12; ++power) {
    AddAround(static_cast<float>(std::pow(10.0, power)), values);
    // The last value that keeps its number of digits when it is rounded, and the first that does not.
    AddAround(static_cast<float>(std::pow(10.0, power) - 0.5 * std::pow(10.0, -decimals)), values);
  }
  for (int i = 0; i < 3000; ++i) {
    // Halves of the last place; a value in the range of measures; any bits.
    AddAround(static_cast<float>((static_cast<double>(random() % 40000) + 0.5) * std::pow(10.0, -decimals)), values);
    AddAround(static_cast<float>(random() % 4096) / 256, values);
    AddAround(static_cast<float>(random() % 2000000) / 1e4F, values);
    AddAround(std::bit_cast<float>(static_cast<std::uint32_t>(random())), values);
  }
  return values;
}

TEST(CellLine, NumbersAreThoseOfOutputCell) {
  std::mt19937 random(1);
  for (const std::string delimiter : {" ", "\t", " | and then | "}) {
    const OutputCell cells(delimiter);
    const std::string taken = delimiter == " " ? "" : delimiter;
    for (int decimals = 0; decimals <= 9; ++decimals) {
      CellLine line(delimiter, decimals);
      const auto text = [&] { return std::string(line.Line()) + taken; };
      for (const float value : AwkwardValues(decimals, random)) {
        line.Clear();
        line.AddReal(value);
        ASSERT_EQ(text(), cells.CellFixedN(value, decimals)) << std::hexfloat << value << " " << decimals;
      }
      for (std::int64_t power = 1; power < 10000000000; power *= 10) {
        for (const std::int64_t wide :
             {power - 1, power, -power, 1 - power, INT64_C(2147483647), INT64_C(-2147483648)}) {
          const auto value = static_cast<std::int32_t>(wide);
          line.Clear();
          line.AddWhole(value);
          ASSERT_EQ(text(), cells.CellLong(value));
        }
      }
    }
  }
}

TEST(CellLine, CellsBehindEachOther) {
  CellLine line(";;", 2);
  EXPECT_EQ(line.Line(), "");
  const std::string large(100000, 'x');
  for (int round = 0; round < 2; ++round) {
    line.Clear();
    line.AddReal(-0.5F);
    line.AddCell(large + ";;");
    line.AddReal(123.456F);
    line.AddWhole(-7);
    line.AddCell("last;;");
    EXPECT_EQ(line.Line(), "-.50;;" + large + ";;123.46;;-7;;last");
  }
}

}  // namespace
}  // namespace tessaly
