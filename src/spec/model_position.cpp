#include "spec/model_position.h"

#include <algorithm>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Takes the digits at the start of `text`, or nothing if they are no element number.
std::optional<std::int32_t> TakeNumber(std::string_view& text) {
  std::int64_t number = 0;
  for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
    number = 10 * number + (text.front() - '0');
    if (number > kHighestElementNumber) return {};
  }
  return static_cast<std::int32_t>(number);
}

/// What stands behind a "-" that is followed by a digit; empty if there is no such.
std::string_view BehindHyphen(std::string_view text) {
  text = TrimLeft(text);
  if (text.empty() || text.front() != '-') return {};
  text = TrimLeft(text.substr(1));
  return !text.empty() && IsDigit(text.front()) ? text : std::string_view();
}

/// Element number or range of `text`, from its first digit on, into `position`. False for a number out of range.
bool TakeElements(std::string_view text, ModelPosition& position) {
  text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
  if (text.empty()) return true;
  const std::optional<std::int32_t> first = TakeNumber(text);
  if (!first) return false;
  position.Low = position.High = *first;
  position.Text += BareText(*first);
  text = BehindHyphen(text);
  if (text.empty()) return true;
  const std::optional<std::int32_t> second = TakeNumber(text);
  if (!second) return false;
  position.Low = std::min(*first, *second);
  position.High = std::max(*first, *second);
  position.Text += '-';
  position.Text += BareText(*second);
  return true;
}

}  // namespace

std::optional<ModelPosition> ParseModelPosition(std::string_view text) {
  std::string letters = UpperAscii(text);
  const bool bias = std::erase(letters, 'B') > 0;
  std::replace(letters.begin(), letters.end(), '_', '-');
  std::string_view rest = TrimBlanks(letters);

  ModelPosition position;
  const auto has = [&rest](char c) { return rest.find(c) != std::string_view::npos; };
  if (has('X')) {
    position.Text = "X";
    position.Low = position.High = kIgnoredPosition;
    return position;
  }
  const bool negative = !rest.empty() && rest.front() == '-';
  if (negative) rest.remove_prefix(1);
  if (has('?')) {
    position.Text = "?";
  } else if (has('$')) {
    position.Text = "$";
  } else {
    position.HasHash = has('#');
    if (position.HasHash) position.Text = "#";
    if (!TakeElements(rest, position)) return {};
  }
  if (position.Text.empty()) return position;
  position.Negative = negative;
  position.Bias = bias;
  if (negative) position.Text.insert(0, 1, '-');
  if (bias) position.Text += 'B';
  return position;
}

}  // namespace tessaly
