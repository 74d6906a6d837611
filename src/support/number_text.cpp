#include "support/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "support/bytes.h"

namespace tessaly {
namespace {

/// Lowest power of ten that is written without exponent.
constexpr int kLowestPlainPower = -2;

/// A value above 0 as D.DDD x 10^Power, without trailing zeros.
struct Decimal {
  std::string Digits;
  int Power = 0;
};

template <class Real>
Decimal ToDecimal(Real magnitude, int significantDigits) {
  char text[40];
  const char* const end =
      std::to_chars(text, text + sizeof text, magnitude, std::chars_format::scientific, significantDigits - 1).ptr;
  const char* const letter = std::find(static_cast<const char*>(text), end, 'e');
  Decimal decimal;
  decimal.Digits.assign(1, text[0]).append(text + 2, static_cast<std::size_t>(letter - text) - 2);
  decimal.Digits.resize(std::max<std::size_t>(decimal.Digits.find_last_not_of('0') + 1, 1));
  std::from_chars(letter + (letter[1] == '+' ? 2 : 1), end, decimal.Power);
  return decimal;
}

std::string ExponentForm(const Decimal& decimal) {
  std::string text(1, decimal.Digits[0]);
  if (decimal.Digits.size() > 1) text.append(1, '.').append(decimal.Digits, 1);
  const std::string power = std::string(TrimLeft(GeneralText(std::abs(decimal.Power))));
  return text.append(decimal.Power < 0 ? "E-" : "E+").append(power.size() < 2 ? "0" : "").append(power);
}

std::string PlainForm(const Decimal& decimal) {
  if (decimal.Power < 0) return "." + std::string(static_cast<std::size_t>(-decimal.Power - 1), '0') + decimal.Digits;
  std::string text = decimal.Digits;
  const auto wholeDigits = static_cast<std::size_t>(decimal.Power) + 1;
  if (text.size() <= wholeDigits) return text.append(wholeDigits - text.size(), '0');
  return text.insert(wholeDigits, 1, '.');
}

template <class Real>
std::string RealText(Real value) {
  constexpr int kSignificantDigits = sizeof(Real) == sizeof(float) ? 7 : 15;
  if (!std::isfinite(value)) return " ***";
  std::string sign(1, value < 0 ? '-' : ' ');
  if (value == 0) return sign + "0";
  const Decimal decimal = ToDecimal(std::abs(value), kSignificantDigits);
  const bool plain = decimal.Power >= kLowestPlainPower && decimal.Power < kSignificantDigits;
  return sign += plain ? PlainForm(decimal) : ExponentForm(decimal);
}

/// A whole value from 0 up in plain digits; behind the 15th they are zeros.
std::string WholeDigits(double whole) {
  if (whole >= 1e15) return PlainForm(ToDecimal(whole, 15));
  char text[24];
  return {text, std::to_chars(text, text + sizeof text, static_cast<std::int64_t>(whole)).ptr};
}

/// `text` cut to `width`; if that takes digits before the point, the end says how many.
std::string Overflowed(std::string text, std::size_t width, int decimals) {
  if (decimals == 0) text += '.';
  const std::size_t point = text.find('.', width);
  const std::size_t lost = point == std::string::npos ? 1 : point - width + 2;
  text.resize(width);
  if (lost <= 2 || width == 0) return text;
  if (width <= 2) {
    text.back() = '*';
  } else {
    text[width - 2] = 'E';
    text[width - 1] = WholeDigits(double(lost))[0];
  }
  return text;
}

/// Length of the decimal number that `text` begins with: sign, digits with a point, exponent. 0 if there is none.
std::size_t NumberLength(std::string_view text) {
  std::size_t at = 0;
  const auto skipSign = [&] { at += at < text.size() && (text[at] == '+' || text[at] == '-'); };
  const auto skipDigits = [&] {
    const std::size_t start = at;
    while (at < text.size() && IsDigit(text[at])) ++at;
    return at - start;
  };
  skipSign();
  std::size_t digits = skipDigits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    digits += skipDigits();
  }
  if (digits == 0) return 0;
  const std::size_t mantissaEnd = at;
  if (at < text.size() && UpperAscii(text[at]) == 'E') {
    ++at;
    skipSign();
    if (skipDigits() == 0) at = mantissaEnd;
  }
  return at;
}

/// Whether an unsigned number out of the range of a double is too large, and not too near to 0.
bool IsHuge(std::string_view number) {
  const std::size_t letter = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, letter);
  std::int64_t power = 0;
  if (letter < number.size()) {
    const std::string_view exponent = number.substr(letter + (number[letter + 1] == '+' ? 2 : 1));
    if (std::from_chars(exponent.data(), exponent.data() + exponent.size(), power).ec != std::errc())
      return exponent[0] != '-';
  }
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
  return point - static_cast<std::int64_t>(mantissa.find_first_of("123456789")) > -power;
}

}  // namespace

std::string GeneralText(float value) {
  return RealText(value);
}

std::string GeneralText(double value) {
  return RealText(value);
}

std::string GeneralText(std::int64_t value) {
  char text[24] = {' '};
  return {text + (value < 0), std::to_chars(text + 1, text + sizeof text, value).ptr};
}

std::string BareText(std::int64_t value) {
  return std::string(TrimLeft(GeneralText(value)));
}

std::string BareText(float value) {
  return std::string(TrimLeft(GeneralText(value)));
}

std::string FormatNumber(double value, int width, int decimals) {
  decimals = std::abs(decimals);
  width = std::abs(width);
  if (decimals > 0) width = std::max(width, decimals + 1);
  const auto columns = static_cast<std::size_t>(width);
  if (std::isnan(value)) return std::string(columns, '*');

  double x = std::abs(value);
  for (int i = 0; i < decimals; ++i) x *= 10;
  x = std::trunc(std::min(x, std::numeric_limits<double>::max()) + 0.5);

  std::string text = WholeDigits(x);
  if (decimals > 0) {
    const auto places = static_cast<std::size_t>(decimals);
    if (text.size() < places) text.insert(0, places - text.size(), '0');
    text.insert(text.size() - places, 1, '.');
  }
  if (x != 0 && value < 0) text.insert(0, 1, '-');
  if (text.size() > columns) return Overflowed(std::move(text), columns, decimals);
  return text.insert(0, columns - text.size(), ' ');
}

std::string FormatSingle(float value, int width, int decimals) {
  return FormatNumber(double(value), width, decimals);
}

std::string ZeroedNumber(double value, int width, int decimals) {
  // Room for every digit of a double: what is too wide for its column must show all the same.
  std::string text(TrimLeft(FormatNumber(value, 330, decimals)));
  if (const std::size_t digits = text.front() == '-' ? 1 : 0; text[digits] == '.') text.insert(digits, 1, '0');
  return RightJustified(text, width);
}

std::string TrimmedNumber(double value) {
  if (std::trunc(value) == value) return std::string(TrimLeft(GeneralText(value)));
  return OneDecimal(value);
}

std::string OneDecimal(double value) {
  std::string text = GeneralText((value * 10 + 0.49999) * 0.1);
  if (text.find('E') != std::string::npos) return ".0";
  const std::size_t point = text.find('.');
  return point == std::string::npos ? text : text.substr(0, point + 2);
}

std::string FixedDecimals(float value, int decimals) {
  // More places than nine are beyond a single.
  const int places = std::min(std::abs(decimals), 9);
  const auto behindPoint = static_cast<std::size_t>(places);
  const bool shown = std::abs(value) <= 1e6f;
  std::string digits =
      shown ? GeneralText(static_cast<std::int64_t>(std::nearbyint(double(value) * std::pow(10.0, places)))) : "???";
  if (digits.size() <= behindPoint) {
    if (!shown) return digits;
    digits.insert(1, behindPoint + 1 - digits.size(), '0');
  }
  digits.insert(digits.size() - behindPoint, 1, '.');
  return std::string(TrimLeft(digits));
}

std::string PlainNumber(float value) {
  std::string text = GeneralText(value);
  if (text.find("E-") != std::string::npos) {
    text = GeneralText(value + (value < 0 ? -1.0f : 1.0f));
    if (text[1] == '1') text[1] = '0';
  }
  return std::string(TrimLeft(text));
}

std::string ShiftLeftOne(std::string_view text) {
  std::string shifted(text);
  if (!shifted.empty() && shifted[0] == ' ') std::rotate(shifted.begin(), shifted.begin() + 1, shifted.end());
  return shifted;
}

std::int16_t RoundToInteger(float value) {
  if (std::isnan(value)) return 0;
  return static_cast<std::int16_t>(std::clamp(std::round(value), -32760.0f, 32760.0f));
}

std::int32_t RoundToLong(double value) {
  if (std::isnan(value)) return 0;
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp(std::round(value), double(Limits::min()), double(Limits::max())));
}

double LeadingNumber(std::string_view text) {
  text = TrimLeft(text);
  text = text.substr(0, NumberLength(text));
  if (text.empty()) return 0;
  const bool negative = text[0] == '-';
  if (negative || text[0] == '+') text.remove_prefix(1);
  double value = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), value).ec == std::errc::result_out_of_range)
    value = IsHuge(text) ? std::numeric_limits<double>::max() : 0;
  return negative ? -value : value;
}

bool IsNumeric(std::string_view text) {
  const std::string_view number = TrimBlanks(text);
  return !number.empty() && NumberLength(number) == number.size();
}

IntegerReading ParseInt(std::string_view text, std::int32_t limit) {
  using Problem = IntegerReading::Problem;
  const double value = std::abs(LeadingNumber(text));
  if (value == 0 && text.find('0') == std::string_view::npos) return {0, Problem::NonNumeric};
  if (value > double(limit)) return {0, Problem::NumberInvalid};
  const auto whole = static_cast<std::int32_t>(value);
  return {whole, value == double(whole) ? Problem::None : Problem::NonInteger};
}

}  // namespace tessaly
