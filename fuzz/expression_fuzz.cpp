// Any bytes as a number: expressions, and the readers of plain numbers.
#include <cmath>

#include "fuzz/harness.h"
#include "support/expression.h"
#include "support/failure.h"
#include "support/number_text.h"

using namespace tessaly;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  try {
    const float value = EvaluateExpression(text);
    fuzz::Require(std::isfinite(value));
    // The shortest text of a single has seven digits, so it cannot always give the same single again.
    fuzz::Require(std::abs(LeadingNumber(GeneralText(value)) - double{value}) <= 1e-6 * std::abs(double{value}));
  } catch (const Halt& halt) {
    fuzz::Require(halt.Code == FailureCode::NumberInvalid);
  }
  LeadingNumber(text);
  if (IsNumeric(text)) FormatNumber(LeadingNumber(text), 9, 2);
  const IntegerReading reading = ParseInt(text, 1000);
  fuzz::Require(reading.Value >= 0 && reading.Value <= 1000);
  return 0;
}
