#include "spec/scale_code.h"

#include <string>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Highest category of a rating scale whose code has no number.
constexpr std::int32_t kDefaultTop = 9;

}  // namespace

std::optional<ScaleCode> ParseScaleCode(std::string_view code) {
  if (code.empty()) return {};
  std::string digits(code.substr(1));
  const bool keep = std::erase(digits, 'K') > 0;
  // A misspelt name of a rating scale is no code.
  if (!TrimBlanks(digits).empty() && !IsNumeric(digits)) return {};
  const double value = LeadingNumber(digits);
  const std::int32_t number = RoundToLong(value);
  if (value > kHighestCategory || value != number) return {};

  ScaleCode scale;
  scale.Keep = keep;
  switch (code.front()) {
    case 'R':
      scale.Top = number > 0 ? number : kDefaultTop;
      return scale;
    case 'B':
      if (number < 1) return {};
      scale.ModelType = ModelType::Binomial;
      scale.Top = number;
      return scale;
    case 'D':
      scale.ModelType = ModelType::Binomial;
      scale.Top = 1;
      scale.DichotomyCut = number > 0 ? number : 0;
      return scale;
    case 'P':
      scale.ModelType = ModelType::Poisson;
      return scale;
    case 'M':
      scale.ModelType = ModelType::Missing;
      return scale;
    default:
      return {};
  }
}

}  // namespace tessaly
