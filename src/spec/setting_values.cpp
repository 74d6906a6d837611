#include "spec/setting_values.h"

#include <cmath>
#include <limits>

#include "support/expression.h"
#include "support/number_text.h"

namespace tessaly {

char FirstLetter(std::string_view text) {
  return text.empty() ? ' ' : UpperAscii(text.front());
}

bool IsYes(std::string_view text) {
  return FirstLetter(text) == 'Y';
}

std::int32_t WholeValue(std::string_view text) {
  return RoundToLong(double(EvaluateExpression(text)));
}

std::int32_t AbsoluteWholeValue(std::string_view text) {
  return RoundToLong(double(AbsoluteValue(text)));
}

float AbsoluteValue(std::string_view text) {
  return std::abs(EvaluateExpression(text));
}

double ExactValue(std::string_view text) {
  return IsNumeric(text) ? LeadingNumber(text) : double(EvaluateExpression(text));
}

IntegerReading PlainInteger(std::string_view text, std::int32_t limit) {
  if (!IsNumeric(text)) return {0, IntegerReading::Problem::NonNumeric};
  return ParseInt(text, limit);
}

std::int32_t FacetInteger(std::string_view item, std::int32_t limit) {
  const IntegerReading reading = PlainInteger(item, limit);
  if (reading.Trouble == IntegerReading::Problem::NonNumeric)
    throw Halt{FailureCode::NumberInvalid,
               QuotedLine(item) + " is no facet number. Please give them with commas between them"};
  if (!reading.Good()) throw Halt{FailureCode::NumberInvalid, {}};
  return reading.Value;
}

bool IsNumberOf(double value, std::string_view text) {
  return value != 0 || text.find('0') != std::string_view::npos;
}

}  // namespace tessaly
