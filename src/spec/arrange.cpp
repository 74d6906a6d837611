#include "spec/arrange.h"

#include "support/bytes.h"

namespace tessaly {
namespace {

constexpr std::string_view kArrangements = "AFMNP";

std::string NormaliseItem(std::string_view item) {
  std::string facet;
  std::string letters;
  for (const char c : item) {
    if (c == ' ' || c == '(' || c == ')') continue;
    if (IsDigit(c) && letters.empty()) {
      facet += c;
    } else if (kArrangements.find(UpperAscii(c)) == std::string_view::npos) {
      throw Halt{FailureCode::InvalidArrangement, {}};
    } else if (letters.find(c) == std::string::npos) {
      letters += c;
    }
  }
  if (letters.find_first_of("Nn") == std::string::npos) letters += 'N';
  return facet + letters;
}

}  // namespace

std::string NormaliseArrange(std::span<const std::string> items) {
  if (items.empty()) return "N";
  std::vector<std::string> codes;
  for (const std::string& item : items) codes.push_back(NormaliseItem(item));
  return Joined(codes, ",");
}

void ReadArrange(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.ArrangeSpec = line.NoValue() ? "" : NormaliseArrange(line.Values);
}

}  // namespace tessaly
