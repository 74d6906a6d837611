// Numbers to text and text to numbers, by rules of our own: no locale, no stream, no rounding that depends on a
// library.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tessaly {

/// The shortest decimal text: at most 7 (single) or 15 (double) significant digits, no trailing zeros, no digit before
/// the point of a value below 1, a leading blank when not negative; exponent form ("1.234E+15", "5E-03") where the
/// whole part has more digits than that, and below 0.01. Asterisks for what is no finite number.
std::string GeneralText(float value);
std::string GeneralText(double value);
std::string GeneralText(std::int64_t value);
inline std::string GeneralText(std::int32_t value) {
  return GeneralText(static_cast<std::int64_t>(value));
}

/// General text without the leading blank: a number that does not stand behind a word.
std::string BareText(std::int64_t value);
std::string BareText(float value);
inline std::string BareText(std::int32_t value) {
  return BareText(static_cast<std::int64_t>(value));
}

/// `value` rounded half away from zero to `decimals` places, right-justified in `width` columns. A value that does not
/// fit loses decimals first; lost leading digits show as "E" and their number in the last two columns ("*" in width 2
/// or less).
std::string FormatNumber(double value, int width, int decimals);
/// The same for a single, from its exact binary value.
std::string FormatSingle(float value, int width, int decimals);
/// `FormatNumber` with a digit before the point of a value below 1: "0.50". Wider than `width` if it does not fit.
std::string ZeroedNumber(double value, int width, int decimals);

/// A whole value as it stands, any other with one decimal; no leading blank before a whole value.
std::string TrimmedNumber(double value);
/// One decimal, cut from (value x 10 + 0.49999) x 0.1, with the leading blank kept; ".0" for values in exponent form.
std::string OneDecimal(double value);
/// `decimals` places (at most 9), ties to even, no width; question marks above 1,000,000 in size. No decimals: "5.".
std::string FixedDecimals(float value, int decimals);
inline std::string Fixed2(float value) {
  return FixedDecimals(value, 2);
}
inline std::string Fixed4(float value) {
  return FixedDecimals(value, 4);
}
/// General text without leading blank and never in exponent form for small values.
std::string PlainNumber(float value);
/// If `text` begins with a blank, that blank moved to its end.
std::string ShiftLeftOne(std::string_view text);

/// Nearest 16-bit integer, half away from zero, held at 32760 and -32760.
std::int16_t RoundToInteger(float value);
/// Nearest integer, half away from zero.
std::int32_t RoundToLong(double value);

/// Smallest variance that divisors and square roots see.
constexpr double kVarianceFloor = 1e-9;
constexpr float SafeFloor32(float value) {
  return value < static_cast<float>(kVarianceFloor) ? static_cast<float>(kVarianceFloor) : value;
}
constexpr double SafeFloor64(double value) {
  return value < kVarianceFloor ? kVarianceFloor : value;
}

/// The value of the decimal number that `text` begins with (blanks skipped, sign and exponent allowed); 0 if there is
/// none.
double LeadingNumber(std::string_view text);
/// Whether `text`, trimmed, is a decimal number and nothing else.
bool IsNumeric(std::string_view text);

/// What the integer reader made of a text.
struct IntegerReading {
  enum class Problem { None, NumberInvalid, NonNumeric, NonInteger };
  std::int32_t Value = 0;
  Problem Trouble = Problem::None;
  bool Good() const { return Trouble == Problem::None; }
};
/// The absolute value of the leading number of `text`, which must be whole and not above `limit`.
/// NonNumeric: no number and no digit 0; NumberInvalid: above `limit` (value 0); NonInteger: it has a fraction.
IntegerReading ParseInt(std::string_view text, std::int32_t limit);

}  // namespace tessaly
