#include "spec/split_line.h"

#include <algorithm>

#include "support/bytes.h"

namespace tessaly {
namespace {

bool IsSeparator(char c) {
  return c == ',' || c == '=' || c == '\t' || c == '\xFF';
}

void SplitValues(std::string_view text, std::vector<std::string>& values) {
  for (;;) {
    const std::size_t end = values.size() + 1 < kMostValues ? text.find(',') : std::string_view::npos;
    values.emplace_back(TrimBlanks(text.substr(0, end)));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  values.back() = std::string(TrimQuotes(values.back()));
}

SplitLine Split(std::string_view work, bool beginsWithValue) {
  std::string commas(work);
  std::replace_if(commas.begin(), commas.end(), IsSeparator, ',');
  std::string_view text = TrimBlanks(commas);
  SplitLine line;
  if (text.empty()) return line;
  if (!beginsWithValue && IsLetter(text.front())) {
    const std::size_t end = text.find(',');
    line.Keyword = std::string(TrimRight(text.substr(0, end)));
    if (end == std::string_view::npos) return line;
    text.remove_prefix(end + 1);
  }
  SplitValues(text, line.Values);
  return line;
}

}  // namespace

bool SplitLine::NoValue() const {
  return std::all_of(Values.begin(), Values.end(), [](const std::string& value) { return value.empty(); });
}

SplitLine SplitSpecLine(std::string_view work) {
  return Split(work, false);
}

SplitLine SplitBlockLine(std::string_view work) {
  const std::string_view text = TrimLeft(work);
  return Split(work, !text.empty() && UpperAscii(text.front()) == 'X');
}

}  // namespace tessaly
