#include "spec/clean_line.h"

#include "support/bytes.h"

namespace tessaly {

void CleanLine(std::string_view raw, bool inSpecification, std::string& work) {
  work.assign(TrimBlanks(raw.substr(0, raw.find(';'))));
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
