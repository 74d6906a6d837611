// What is taken off a line before it is split.
#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// Whether `raw` holds a comment that is to be shown (";;").
inline bool HasVisibleComment(std::string_view raw) {
  return raw.find(";;") != std::string_view::npos;
}

/// `raw` without comment (from the first ";" on) and trimmed; control characters but TAB become blanks, and so do
/// no-break spaces (byte 160, or 194 160 in a line of UTF-8). A line of only
/// blanks, commas and TABs is empty. In a specification TABs become blanks too.
void CleanLine(std::string_view raw, bool inSpecification, std::string& work);

}  // namespace tessaly
