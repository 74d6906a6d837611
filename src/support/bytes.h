// Text is bytes, exactly as read. These helpers neither know nor ask for a locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// Some editors put it in front of UTF-8 text.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr char UpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr bool IsLetter(char c) {
  return UpperAscii(c) >= 'A' && UpperAscii(c) <= 'Z';
}

/// The letters a to z in capitals; all other bytes stay.
std::string UpperAscii(std::string_view text);
/// The letters A to Z in small; all other bytes stay.
std::string LowerAscii(std::string_view text);

/// `text` without blanks (character 32 alone) at either end, at the start, at the end.
std::string_view TrimBlanks(std::string_view text);
std::string_view TrimLeft(std::string_view text);
std::string_view TrimRight(std::string_view text);
/// `text` without blanks and quote marks (" and ') at both ends.
std::string_view TrimQuotes(std::string_view text);

/// `text` with every `from` replaced by `to`.
std::string Replaced(std::string_view text, char from, char to);
/// The items between `separator`s, as they stand; an empty text has one empty item.
std::vector<std::string_view> SplitAt(std::string_view text, char separator);
/// The items with `separator` between them.
std::string Joined(const std::vector<std::string>& items, std::string_view separator);

/// `text` right-justified in `width` bytes; a longer text stands as it is.
std::string RightJustified(std::string_view text, int width);
/// `text` filled up with blanks or cut to `width` bytes.
std::string CutOrPad(std::string_view text, int width);

/// `line` as messages quote it: whoever reads them wants the start of a line, not all of a file without line ends.
/// Cut to 1,000 characters.
std::string QuotedLine(std::string_view line);

/// How texts with bytes above 127 are taken: 'Y' as UTF-8 unseen, 'N' never, '?' as UTF-8 if they are valid.
struct TextEncoding {
  char Utf8Encoded = '?';
  /// Stands in for a multi-byte character where the display cannot show it.
  char Utf8Sub = '.';
};

/// Whether `text` holds multi-byte characters. Pure ASCII is never UTF-8 here.
bool IsUtf8(std::string_view text, const TextEncoding& encoding = {});
/// Columns that `text` takes in a report. Three-byte characters count 1.8, the sum is rounded half to even.
std::int32_t DisplayLength(std::string_view text, const TextEncoding& encoding = {});
/// `text` filled up with blanks or cut to `width` report columns. With multi-byte characters it has more bytes than
/// `width`.
std::string PadToWidth(std::string_view text, int width, const TextEncoding& encoding = {});
/// `text` with every multi-byte character replaced by `Utf8Sub`; stops at the first byte that is no UTF-8.
std::string SubstituteUtf8(std::string_view text, const TextEncoding& encoding = {});

}  // namespace tessaly
