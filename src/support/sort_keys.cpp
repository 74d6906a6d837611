#include "support/sort_keys.h"

#include <algorithm>
#include <bit>

#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"
#include "support/polled_sort.h"

namespace tessaly {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

template <class Unsigned>
std::string PackedHex(Unsigned value) {
  std::string digits;
  for (std::size_t i = 0; i < sizeof value; ++i) {
    const auto byte = static_cast<unsigned>(value >> (8 * i)) & 255u;
    digits += kHexDigits[byte >> 4];
    digits += kHexDigits[byte & 15u];
  }
  return digits;
}

template <class Unsigned>
Unsigned UnpackedHex(std::string_view digits, std::string_view failure) {
  if (digits.size() != 2 * sizeof(Unsigned) || digits.find_first_not_of(kHexDigits) != std::string_view::npos)
    throw FatalError{std::string(failure).append(digits)};
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const auto byte = static_cast<std::uint32_t>(16 * kHexDigits.find(digits[i]) + kHexDigits.find(digits[i + 1]));
    value |= byte << (4 * i);
  }
  return static_cast<Unsigned>(value);
}

std::string BytesReversed(std::string_view digits, std::size_t length, std::string_view failure) {
  if (digits.size() != length)
    throw FatalError{std::string(failure).append(TrimLeft(GeneralText(static_cast<std::int64_t>(digits.size()))))};
  std::string reversed;
  for (std::size_t i = length; i > 0; i -= 2) reversed.append(digits, i - 2, 2);
  return reversed;
}

}  // namespace

std::string MKIhex(std::int16_t value) {
  return PackedHex(static_cast<std::uint16_t>(value));
}

std::string MKLhex(std::int32_t value) {
  return PackedHex(static_cast<std::uint32_t>(value));
}

std::string MKShex(float value) {
  return PackedHex(std::bit_cast<std::uint32_t>(value));
}

std::int16_t CVIhex(std::string_view digits) {
  constexpr std::string_view kFailure = "Failure (10)! Illegal Function Call for CVIhex of: ";
  return static_cast<std::int16_t>(UnpackedHex<std::uint16_t>(digits, kFailure));
}

std::int32_t CVLhex(std::string_view digits) {
  constexpr std::string_view kFailure = "Failure (11)! Illegal Function Call for CVLhex of: ";
  return static_cast<std::int32_t>(UnpackedHex<std::uint32_t>(digits, kFailure));
}

std::string SwapInteger(std::string_view digits) {
  return BytesReversed(digits, 4, "Failure (2)! iSwap$ not 4 bytes: ");
}

std::string SwapLong(std::string_view digits) {
  return BytesReversed(digits, 8, "Failure (1)! Swapl$ not 8 bytes: ");
}

std::string FloatKey(float value) {
  if (value == 0) return "100000000";
  return value < 0 ? "0" + SwapLong(MKShex(1 / value)) : "1" + SwapLong(MKShex(value));
}

std::int32_t ShellStart(std::int32_t n) {
  std::int64_t power = 1;
  while (3 * power <= 2 * std::int64_t{n}) power *= 3;
  return std::max(static_cast<std::int32_t>(power / 2), 1);
}

void SortStrings(std::vector<std::string>& keys, std::string_view lengthFailure, const std::function<void()>& poll) {
  for (const std::string& key : keys)
    if (key.size() != keys[0].size()) throw FatalError{std::string(lengthFailure)};
  if (!std::is_sorted(keys.begin(), keys.end())) PolledSort(keys, std::less<>(), poll);
}

void AppendKey(std::string& key, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) key += static_cast<char>(value >> shift & 255u);
}

void AppendKey(std::string& key, float value) {
  constexpr std::uint32_t kSign = 0x80000000u;
  const auto bits = value == 0 ? 0u : std::bit_cast<std::uint32_t>(value);
  // Negative numbers have the larger bits the lower they are.
  AppendKey(key, (bits & kSign) != 0 ? ~bits : bits | kSign);
}

}  // namespace tessaly
