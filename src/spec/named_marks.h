// Delimiters and quotation marks of output files, which users name by words.
#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// What a user calls a delimiter or a mark, told by the first letter; any other text is meant itself. No text means
/// fields of fixed width (" "), or no mark.
std::string DelimiterOf(std::string_view word);
std::string QuoteMarkOf(std::string_view word);

/// The words for them, which read back.
std::string DelimiterWord(std::string_view delimiter);
std::string QuoteMarkWord(std::string_view mark);

}  // namespace tessaly
