#include "spec/named_marks.h"

#include <algorithm>
#include <span>

#include "spec/setting_values.h"

namespace tessaly {

namespace {

struct NamedMark {
  std::string_view Letters;
  std::string_view Word;
  std::string_view Text;
};

constexpr NamedMark kDelimiters[] = {
    {"T", "Tabs", "\t"}, {"CY", "Commas", ","}, {"S", "Semicolons", ";"}, {"NBF", "Fixed", " "}};
constexpr NamedMark kQuoteMarks[] = {{"DQ", "Double-quotes", "\""}, {"A", "Apostrophes", "'"}, {"C", "Commas", ","},
                                     {"S", "Semicolons", ";"},      {"B", "Blanks", " "},      {"N", "", ""}};

std::string TextOf(std::span<const NamedMark> marks, std::string_view word) {
  const auto found = std::find_if(marks.begin(), marks.end(), [&](const NamedMark& mark) {
    return mark.Letters.find(FirstLetter(word)) != std::string_view::npos;
  });
  return std::string(found == marks.end() ? word : found->Text);
}

std::string WordOf(std::span<const NamedMark> marks, std::string_view text) {
  const auto found = std::find_if(marks.begin(), marks.end(), [&](const NamedMark& mark) { return mark.Text == text; });
  return std::string(found == marks.end() ? text : found->Word);
}

}  // namespace

std::string DelimiterOf(std::string_view word) {
  return FirstLetter(word) == ' ' ? " " : TextOf(kDelimiters, word);
}

std::string QuoteMarkOf(std::string_view word) {
  return TextOf(kQuoteMarks, word);
}

std::string DelimiterWord(std::string_view delimiter) {
  return WordOf(kDelimiters, delimiter.empty() ? " " : delimiter);
}

std::string QuoteMarkWord(std::string_view mark) {
  return WordOf(kQuoteMarks, mark);
}

}  // namespace tessaly
