#include "reports/edit_word.h"

#include <algorithm>

#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Length of the literal or field at the start of `text`.
std::size_t TokenLength(std::string_view text) {
  if (text.empty()) return 0;
  std::size_t end = 1;
  switch (text[0]) {
    case '!':
    case '&':
      break;
    case ' ':
      end = text.find_first_not_of(' ');
      break;
    case '#':
      end = text.find_first_not_of("#.,");
      break;
    case '\\':
      end = text.find('\\', 1);
      if (end != std::string_view::npos) ++end;
      break;
    default:
      end = text.find_first_of("#&\\! ", 1);
  }
  return std::min(end, text.size());
}

int Width(std::string_view field) {
  return static_cast<int>(field.size());
}

int Decimals(std::string_view field) {
  const std::size_t point = field.find('.');
  return point == std::string_view::npos ? 0 : static_cast<int>(field.size() - point - 1);
}

}  // namespace

std::string_view EditWord::NextEditWord() {
  const std::string_view rest = std::string_view(editWord_).substr(position_);
  const std::size_t length = TokenLength(rest);
  position_ += length;
  return rest.substr(0, length);
}

std::string_view EditWord::NextField(std::string_view kinds) {
  for (;;) {
    const std::string_view token = NextEditWord();
    if (token.empty() || kinds.find(token[0]) != std::string_view::npos) return token;
    line_ += token;
  }
}

EditWord& EditWord::EditText(std::string_view text) {
  const std::string_view field = NextField("\\&!");
  if (field.empty()) throw FatalError{"Failure (12)! Edit word missing for: " + std::string(text)};
  if (field == "&") {
    line_ += text;
  } else {
    line_ += PadToWidth(text, Width(field), encoding_);
  }
  return *this;
}

EditWord& EditWord::EditSingle(float value) {
  const std::string_view field = NextField("#");
  if (field.empty()) throw FatalError{"Failure (13)! Edit word missing for: " + GeneralText(value)};
  line_ += FormatSingle(value, Width(field), Decimals(field));
  return *this;
}

EditWord& EditWord::EditDouble(double value) {
  const std::string_view field = NextField("#");
  if (field.empty()) throw FatalError{"Failure (13)! Edit word missing for" + GeneralText(value)};
  line_ += FormatNumber(value, Width(field), Decimals(field));
  return *this;
}

EditWord& EditWord::EditScore(double value) {
  const std::size_t start = line_.size();
  EditDouble(value);
  if (line_.ends_with(".0")) line_.replace(line_.size() - 2, 2, "  ");
  // A value too wide for its field may end in the point alone.
  if (line_.ends_with('.')) line_.back() = ' ';
  if (line_.size() >= start + 3 && line_.ends_with("   ")) line_[line_.size() - 3] = '0';
  return *this;
}

EditWord& EditWord::EditLong(std::int32_t value) {
  const std::string_view field = NextField("#");
  if (field.empty()) throw FatalError{"Failure (13)! Edit word missing for" + GeneralText(value)};
  line_ += FormatNumber(value, Width(field), Decimals(field));
  return *this;
}

EditWord& EditWord::EditInteger(std::int16_t value) {
  const std::string text = GeneralText(value);
  const std::string_view field = NextField("#");
  if (field.empty()) throw FatalError{"Failure (13)! Edit word missing for" + text};
  if (Decimals(field) > 0) {
    line_ += FormatNumber(value, Width(field), Decimals(field));
  } else {
    const std::string padded = RightJustified(text, Width(field));
    line_.append(padded, padded.size() - field.size());
  }
  return *this;
}

std::string EditWord::Line() const {
  return line_ + editWord_.substr(position_);
}

}  // namespace tessaly
