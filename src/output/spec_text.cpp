#include "output/spec_text.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "support/bytes.h"
#include "support/expression.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kFewestDecimals = 6;
constexpr int kMostDecimals = 10;
/// Room for every digit of a single.
constexpr int kWidth = 60;
/// Beyond it decimals tell nothing, and digits too many leave single precision.
constexpr float kLargestWithDecimals = 1e30F;

/// The shortest text of `value` whose reading (a single) is `good`, if there is one. The reader rounds at each digit:
/// where it misses the number meant, a neighbour of the text often meets it.
template <class Good>
std::optional<std::string> TextReadAs(float value, Good good) {
  std::string text = PlainNumber(value);
  if (std::fabs(value) > kLargestWithDecimals || good(EvaluateExpression(text))) return text;
  for (int decimals = kFewestDecimals; decimals <= kMostDecimals; ++decimals) {
    for (const double step : {0.0, 1.0, -1.0, 2.0, -2.0, 3.0, -3.0}) {
      const double near = double(value) + step * std::pow(10.0, -decimals);
      text = TrimLeft(FormatNumber(near, kWidth, decimals));
      if (good(EvaluateExpression(text))) return text;
    }
  }
  return {};
}

/// The same for numbers whose digits are all behind the last decimal.
template <class Good>
std::optional<std::string> ExponentTextReadAs(float value, Good good) {
  if (value == 0 || std::fabs(value) >= 1) return {};
  const double exponent = std::floor(std::log10(std::fabs(double(value))));
  for (int decimals = kFewestDecimals; decimals <= kMostDecimals; ++decimals) {
    for (const double step : {0.0, 1.0, -1.0, 2.0, -2.0, 3.0, -3.0}) {
      const double mantissa = double(value) / std::pow(10.0, exponent) + step * std::pow(10.0, -decimals);
      const std::string text = std::string(TrimLeft(FormatNumber(mantissa, kWidth, decimals))) + "E" +
                               BareText(static_cast<std::int64_t>(exponent));
      if (good(EvaluateExpression(text))) return text;
    }
  }
  return {};
}

std::string ManyDecimals(float value) {
  return std::string(TrimLeft(FormatNumber(double(value), kWidth, kMostDecimals)));
}

/// `logit` as mean + scale x logit: read back as the same single if that can be, else as one that is printed alike.
std::string UserText(float logit, float mean, const Settings& settings) {
  const float scale = settings.Uscale;
  const float value = mean + scale * logit;
  const int decimals = std::max(settings.Udecimals, kFewestDecimals);
  const std::string printed = FormatSingle(value, kWidth, decimals);
  const auto again = [&](float read) { return (read - mean) / scale; };
  const auto within = [&](float read) { return std::fabs(again(read)) <= settings.HardwareExponent; };
  if (const auto text =
          TextReadAs(value, [&](float read) { return within(read) && mean + scale * again(read) == value; }))
    return *text;
  return TextReadAs(value,
                    [&](float read) {
                      return within(read) && FormatSingle(mean + scale * again(read), kWidth, decimals) == printed;
                    })
      .value_or(ManyDecimals(value));
}

}  // namespace

std::string SpecNumber(float value) {
  const auto same = [&](float read) { return read == value; };
  if (const auto text = TextReadAs(value, same)) return *text;
  return ExponentTextReadAs(value, same).value_or(ManyDecimals(value));
}

std::string SpecMeasure(float measure, const Settings& settings) {
  return UserText(measure, settings.Umean, settings);
}

std::string SpecThreshold(float threshold, const Settings& settings) {
  return UserText(threshold, 0, settings);
}

std::string SpecLine(std::string_view values, std::string_view comment) {
  values = TrimRight(values);
  if (!values.empty() && values.back() == ',') values = TrimRight(values.substr(0, values.size() - 1));
  std::string line(values);
  const std::string_view last = TrimBlanks(values.substr(values.find_last_of(",=") + 1));
  if (TrimQuotes(last) != last) line += ',';
  if (!comment.empty()) line.append(" ; ").append(comment);
  return std::string(TrimRight(line));
}

}  // namespace tessaly
