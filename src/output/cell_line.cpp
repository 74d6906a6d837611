#include "output/cell_line.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <tuple>

namespace tessaly {

namespace {

constexpr std::size_t kCellWidth = 10;
/// Lowest whole number that a fixed field has room for.
constexpr std::int32_t kLowestFixed = -999999999;
/// Above it a delimited cell has no digits.
constexpr float kLargestDelimited = 1e6F;
/// 1.5 x 2^52: a double about as large has no fraction, so that adding it rounds, ties to even.
constexpr double kNoFraction = 6755399441055744.0;
/// Cells of real numbers are kept up to this many times the last decimal: few residuals, variances and measures have
/// more than four digits.
constexpr std::int64_t kHighestKept = 9999;

double PowerOfTen(int exponent) {
  double power = 1;
  for (int i = 0; i < exponent; ++i) power *= 10;
  return power;
}

/// The first size that is too wide for a fixed field, times 10^`decimals` and not yet rounded.
double FixedLimit(int decimals, int signWidth) {
  const int digits = static_cast<int>(kCellWidth) - signWidth - (decimals > 0 ? 1 : 0);
  return digits < decimals ? 0 : PowerOfTen(digits) - 0.5;
}

int DigitCount(std::uint64_t number) {
  int count = 1;
  for (std::uint64_t power = 10; number >= power; power *= 10) ++count;
  return count;
}

/// Takes the last `count` digits off `number` and writes them in front of `end`. Gives where they begin.
char* TakeDigits(std::uint64_t& number, int count, char* end) {
  for (; count > 0; --count, number /= 10) *--end = static_cast<char>('0' + number % 10);
  return end;
}

}  // namespace

CellLine::CellLine(const std::string& delimiter, int decimals)
    : cells_(delimiter),
      delimiter_(delimiter),
      fixed_(delimiter == " "),
      decimals_(decimals),
      power_(PowerOfTen(decimals)),
      limits_{FixedLimit(decimals, 0), FixedLimit(decimals, 1)},
      kept_(2 * kHighestKept + 1),
      keptBlanks_(fixed_ ? kCellWidth - std::tuple_size_v<decltype(KeptCell::Text)> : 0) {
  for (std::int64_t number = -kHighestKept; number <= kHighestKept; ++number) {
    const std::string cell = cells_.CellFixedN(static_cast<float>(static_cast<double>(number) / power_), decimals);
    KeptCell& kept = kept_[static_cast<std::size_t>(number + kHighestKept)];
    if (cell.size() - keptBlanks_ > kept.Text.size() || cell.find_first_not_of(' ') < keptBlanks_) continue;
    kept.Length = static_cast<std::uint8_t>(cell.copy(kept.Text.data(), kept.Text.size(), keptBlanks_));
  }
}

void CellLine::AddWhole(std::int32_t value) {
  if (fixed_ && value < kLowestFixed) {
    AddCell(cells_.CellLong(value));
  } else {
    AddDigits(value, 0, false);
  }
}

void CellLine::AddReal(float value) {
  // Exact: a single has 24 binary digits, and 5^9 has 21.
  const double shifted = static_cast<double>(value) * power_;
  const bool quick = fixed_ ? std::abs(shifted) < limits_[value < 0] : std::abs(value) <= kLargestDelimited;
  if (!quick) {
    AddCell(cells_.CellFixedN(value, decimals_));
    return;
  }
  const double rounded = fixed_ ? shifted + std::copysign(0.5, shifted) : shifted + kNoFraction - kNoFraction;
  const auto number = static_cast<std::int64_t>(rounded);
  const auto place = static_cast<std::size_t>(number + kHighestKept);
  if (place >= kept_.size() || kept_[place].Length == 0) {
    AddDigits(number, decimals_, !fixed_ || decimals_ > 0);
    return;
  }
  // As many characters for all lengths: what is behind the cell will be overwritten.
  char* const to = Room(kCellWidth);
  std::memset(to, ' ', kCellWidth - kept_[place].Text.size());
  std::memcpy(to + keptBlanks_, kept_[place].Text.data(), kept_[place].Text.size());
  length_ += keptBlanks_ + kept_[place].Length;
}

void CellLine::AddDigits(std::int64_t number, int decimals, bool point) {
  const bool negative = number < 0;
  auto digits = static_cast<std::uint64_t>(std::abs(number));
  const int before = std::max(DigitCount(digits) - decimals, decimals > 0 ? 0 : 1);
  char* end;
  if (fixed_) {
    end = std::fill_n(Room(kCellWidth), kCellWidth, ' ');
    length_ += kCellWidth;
  } else {
    const auto length = static_cast<std::size_t>(before + decimals) + (point ? 1 : 0) + (negative ? 1 : 0);
    end = Room(length + delimiter_.size()) + length;
    length_ += length + delimiter_.copy(end, delimiter_.size());
  }
  end = TakeDigits(digits, decimals, end);
  if (point) *--end = '.';
  end = TakeDigits(digits, before, end);
  if (negative) *--end = '-';
}

std::string_view CellLine::Line() const {
  const std::string_view line(buffer_.data(), length_);
  return fixed_ || line.empty() ? line : line.substr(0, line.size() - delimiter_.size());
}

}  // namespace tessaly
