#include "spec/clean_line.h"

#include "support/bytes.h"

namespace tessaly {
namespace {

constexpr char kNoBreakSpace = '\xA0';
constexpr char kUtf8SpaceLead = '\xC2';

/// In UTF-8 the byte of a no-break space is also part of other characters: only the whole sequence counts there.
void BlankNoBreakSpaces(std::string& work) {
  std::size_t at = work.find(kNoBreakSpace);
  if (at == std::string::npos) return;
  const bool utf8 = IsUtf8(work);
  for (; at != std::string::npos; at = work.find(kNoBreakSpace, at + 1)) {
    if (!utf8) {
      work[at] = ' ';
    } else if (work[at - 1] == kUtf8SpaceLead) {
      work.replace(--at, 2, 1, ' ');
    }
  }
}

}  // namespace

void CleanLine(std::string_view raw, bool inSpecification, std::string& work) {
  work.assign(raw.substr(0, raw.find(';')));
  BlankNoBreakSpaces(work);
  const std::string_view trimmed = TrimBlanks(work);
  work.assign(trimmed.data(), trimmed.size());
  bool hasText = false;
  for (char& c : work) {
    const bool isTab = c == '\t';
    if (static_cast<unsigned char>(c) < ' ' && (inSpecification || !isTab)) c = ' ';
    hasText |= c != ' ' && c != ',' && !isTab;
  }
  if (!hasText) {
    work.clear();
  } else if (inSpecification) {
    // Characters that became blanks may stand at the ends.
    work.erase(work.find_last_not_of(' ') + 1);
    work.erase(0, work.find_first_not_of(' '));
  }
}

}  // namespace tessaly
