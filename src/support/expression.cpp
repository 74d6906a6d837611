#include "support/expression.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {
namespace {

// The expression is reduced from the inside outward by rewriting its text: what has been computed is overwritten by a
// reference, the letter V and a character for the slot that holds the value, and blanks up to the old width.
constexpr std::size_t kCleanedCapacity = 101;
constexpr std::size_t kExpandedCapacity = 104;
constexpr std::size_t kSlotCount = 26;
constexpr char kReference = 'V';
constexpr char kFirstSlotMark = 'B';
/// Stands for the minus of an exponent, which must not be taken for an operator.
constexpr char kExponentMinus = '@';
/// Added to the first character of a number that has a minus of its own.
constexpr int kFoldedMinus = 97;
constexpr std::string_view kOperators = "^*/-+";

bool IsOperator(char c) {
  return kOperators.find(c) != std::string_view::npos;
}

bool IsReference(std::string_view text) {
  return text.size() == 2 && text[0] == kReference;
}

/// Precedence of an operator as parentheses around it: the weaker it is, the more of them it closes and opens.
std::string Widened(char op) {
  const std::size_t levels = op == '^' ? 1 : op == '*' || op == '/' ? 2 : 3;
  return std::string(levels, ')') + op + std::string(levels, '(');
}

/// A finite single, or nothing where arithmetic failed.
std::optional<float> Single(double value) {
  if (!(std::abs(value) <= double(std::numeric_limits<float>::max()))) return {};
  return float(value);
}

std::optional<float> Apply(char op, float left, float right) {
  switch (op) {
    case '+':
      return Single(double(left + right));
    case '-':
      return Single(double(left - right));
    case '*':
      return Single(double(left * right));
    case '/':
      if (right == 0) return {};
      return Single(double(left / right));
    default:
      return Single(std::pow(double(left), double(right)));
  }
}

/// One evaluation. Every step gives nothing on a failure of the expression.
class Evaluation {
 public:
  explicit Evaluation(std::string_view text) : text_(text) {}
  std::optional<float> EvaluateGroups();

 private:
  void Store(std::string& working, std::size_t capacity, std::string_view piece) const;
  void Keep(char c) { Store(cleaned_, kCleanedCapacity, {&c, 1}); }
  void KeepDigit(char c);
  bool KeepOperator(char op, bool directlyBehindStar);
  bool Clean();

  std::optional<std::size_t> TakeSlot();
  void Fill(std::size_t slot, float value);
  float Referenced(std::string_view reference) const;
  static void Overwrite(std::string& working, std::size_t open, std::size_t close, std::size_t slot);
  std::optional<float> EvaluateGroup(std::string_view group);
  std::string Expanded(std::string_view group) const;
  std::optional<float> EvaluateChain(std::string_view chain) const;
  std::optional<float> EvaluateOperand(std::string_view operand) const;

  std::optional<float> ParseNumber(std::string_view number) const;
  float ParseDigits(std::string_view digits) const;
  float ParseFraction(std::string_view digits) const;
  float InRange(double value) const;

  std::string_view text_;
  std::string cleaned_;
  std::array<float, kSlotCount + 1> slots_{};
  std::size_t slotsTaken_ = 0;
  std::size_t lastFilled_ = 0;
};

Halt Unreadable(std::string_view what, std::string_view text) {
  constexpr std::size_t kShown = 100;
  return {FailureCode::NumberInvalid, std::string(what) + std::string(text.substr(0, kShown))};
}

void Evaluation::Store(std::string& working, std::size_t capacity, std::string_view piece) const {
  if (working.size() + piece.size() > capacity) throw Unreadable("Expression too long: ", text_);
  working += piece;
}

void Evaluation::KeepDigit(char c) {
  const bool folds = cleaned_.back() == '-' && cleaned_[cleaned_.size() - 2] == '(';
  if (folds) {
    cleaned_.back() = static_cast<char>(c + kFoldedMinus);
  } else {
    Keep(c);
  }
}

/// Settles a pair of operators; false where the pair means nothing.
bool Evaluation::KeepOperator(char op, bool directlyBehindStar) {
  char& last = cleaned_.back();
  if (!IsOperator(last)) {
    Keep(op);
    return true;
  }
  if (last == '+') {
    if (op == '-') last = op;
    return true;
  }
  if (last == '-') {
    if (op == '+') return true;
    if (op != '-') return false;
    if (cleaned_[cleaned_.size() - 2] == '(') {
      cleaned_.pop_back();
    } else {
      last = '+';
    }
    return true;
  }
  if (last != '*' || op != '*' || !directlyBehindStar) return false;
  last = '^';
  return true;
}

bool Evaluation::Clean() {
  Keep('(');
  for (std::size_t i = 0; i < text_.size(); ++i) {
    const char c = UpperAscii(text_[i]);
    if (c == ' ' || c == '\t') continue;
    if (IsDigit(c) || c == '.') {
      KeepDigit(c);
    } else if (c == '(' || c == ')') {
      Keep(c);
    } else if (c == 'E' || c == 'D') {
      ++i;
      if (i == text_.size() || (text_[i] != '+' && text_[i] != '-')) return false;
      Keep('E');
      Keep(text_[i] == '+' ? '0' : kExponentMinus);
    } else if (IsOperator(c)) {
      if (!KeepOperator(c, i > 0 && text_[i - 1] == '*')) return false;
    } else {
      break;
    }
  }
  Keep(')');
  return true;
}

std::optional<std::size_t> Evaluation::TakeSlot() {
  if (slotsTaken_ == kSlotCount) return {};
  return ++slotsTaken_;
}

void Evaluation::Fill(std::size_t slot, float value) {
  slots_[slot] = value;
  lastFilled_ = slot;
}

float Evaluation::Referenced(std::string_view reference) const {
  return slots_[static_cast<std::size_t>(reference[1] - kFirstSlotMark) + 1];
}

void Evaluation::Overwrite(std::string& working, std::size_t open, std::size_t close, std::size_t slot) {
  std::fill(working.begin() + std::ptrdiff_t(open), working.begin() + std::ptrdiff_t(close) + 1, ' ');
  working[open] = kReference;
  working[open + 1] = static_cast<char>(kFirstSlotMark + static_cast<int>(slot) - 1);
}

std::optional<float> Evaluation::EvaluateGroups() {
  if (!Clean()) return {};
  for (std::size_t close; (close = cleaned_.find(')')) != std::string::npos;) {
    const std::size_t open = cleaned_.rfind('(', close);
    if (open == std::string::npos) return {};
    const auto slot = TakeSlot();
    if (!slot) return {};
    const std::string_view group = TrimBlanks(std::string_view(cleaned_).substr(open + 1, close - open - 1));
    const auto value = IsReference(group) ? Referenced(group) : EvaluateGroup(group);
    if (!value) return {};
    Fill(*slot, *value);
    Overwrite(cleaned_, open, close, *slot);
  }
  return slots_[lastFilled_];
}

std::string Evaluation::Expanded(std::string_view group) const {
  std::string expanded = "((((";
  for (const char c : group) {
    if (c == ' ') continue;
    Store(expanded, kExpandedCapacity, IsOperator(c) ? Widened(c) : std::string(1, c));
  }
  Store(expanded, kExpandedCapacity, "))))");
  return expanded;
}

/// The value of a text without parentheses.
std::optional<float> Evaluation::EvaluateGroup(std::string_view group) {
  if (group.empty()) return 0.0f;
  std::string working = Expanded(group);
  for (std::size_t close; (close = working.find(')')) != std::string::npos;) {
    const std::size_t open = working.rfind('(', close);
    const std::string_view level = TrimBlanks(std::string_view(working).substr(open + 1, close - open - 1));
    if (IsReference(level)) {
      working[open] = working[close] = ' ';
      continue;
    }
    const auto slot = TakeSlot();
    if (!slot) return {};
    const auto value = EvaluateChain(level);
    if (!value) return {};
    Fill(*slot, *value);
    Overwrite(working, open, close, *slot);
  }
  return slots_[lastFilled_];
}

/// The value of operands of one level. The split at the first operator makes them group to the right.
std::optional<float> Evaluation::EvaluateChain(std::string_view chain) const {
  if (chain.empty()) return 0.0f;
  const std::size_t at = chain.find_first_of(kOperators);
  if (at == std::string_view::npos) return EvaluateOperand(chain);
  const auto left = EvaluateChain(chain.substr(0, at));
  if (!left) return {};
  const auto right = EvaluateChain(chain.substr(at + 1));
  if (!right) return {};
  return Apply(chain[at], *left, *right);
}

std::optional<float> Evaluation::EvaluateOperand(std::string_view operand) const {
  const std::size_t at = operand.find(kReference);
  if (at == std::string_view::npos) return ParseNumber(TrimBlanks(operand));
  if (operand.find(kReference, at + 2) != std::string_view::npos) return {};
  return Referenced(operand.substr(at, 2));
}

std::string_view TakeDigits(std::string_view& rest) {
  const auto end = std::find_if_not(rest.begin(), rest.end(), IsDigit);
  const std::string_view digits = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
  rest.remove_prefix(digits.size());
  return digits;
}

bool Take(std::string_view& rest, char c) {
  if (rest.empty() || rest[0] != c) return false;
  rest.remove_prefix(1);
  return true;
}

std::optional<float> Evaluation::ParseNumber(std::string_view number) const {
  std::string text(number);
  const bool negative = !text.empty() && static_cast<unsigned char>(text[0]) >= kFoldedMinus;
  if (negative) text[0] = static_cast<char>(text[0] - kFoldedMinus);
  std::string_view rest = text;
  const std::string_view whole = TakeDigits(rest);
  const std::string_view fraction = Take(rest, '.') ? TakeDigits(rest) : std::string_view();
  const bool hasExponent = Take(rest, 'E');
  const double exponentSign = hasExponent && Take(rest, kExponentMinus) ? -1 : 1;
  const std::string_view exponentDigits = hasExponent ? TakeDigits(rest) : std::string_view();
  if ((whole.empty() && fraction.empty()) || !rest.empty()) return {};

  float value = InRange(double(ParseDigits(whole) + ParseFraction(fraction)));
  const float exponent = ParseDigits(exponentDigits);
  if (exponent != 0) value = InRange(double(value) * std::pow(10.0, exponentSign * double(exponent)));
  return negative ? -value : value;
}

/// A whole number, rounded to single at each digit.
float Evaluation::ParseDigits(std::string_view digits) const {
  float value = 0;
  for (const char c : digits) value = value * 10 + float(c - '0');
  return InRange(double(value));
}

float Evaluation::ParseFraction(std::string_view digits) const {
  const float value = ParseDigits(digits);
  return value > 0 ? float(double(value) * std::pow(10.0, -double(digits.size()))) : value;
}

float Evaluation::InRange(double value) const {
  const auto single = Single(value);
  if (!single) throw Unreadable("Number too large in expression: ", text_);
  return *single;
}

}  // namespace

float EvaluateExpression(std::string_view text) {
  return Evaluation(text).EvaluateGroups().value_or(0.0f);
}

}  // namespace tessaly
