#include "support/bytes.h"

#include <algorithm>
#include <cmath>

namespace tessaly {
namespace {

unsigned char ByteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

bool IsContinuation(unsigned char byte) {
  return byte >= 128 && byte <= 191;
}

/// Bytes of the character that `lead` opens; 0 for a byte that opens none.
std::size_t SequenceLength(unsigned char lead) {
  if (lead <= 127) return 1;
  if (lead >= 194 && lead <= 223) return 2;
  if (lead >= 224 && lead <= 239) return 3;
  if (lead >= 240 && lead <= 244) return 4;
  return 0;
}

/// Bytes of the whole character at `at`; 0 if there is none. Overlong forms and surrogates pass.
std::size_t CharacterLength(std::string_view text, std::size_t at) {
  const std::size_t length = SequenceLength(ByteAt(text, at));
  if (length == 0 || length > text.size() - at) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if (!IsContinuation(ByteAt(text, at + i))) return 0;
  return length;
}

struct ColumnShare {
  std::size_t Bytes;
  double Columns;
};

/// What one character takes when a column is filled. Only lead bytes 228 to 233, where the wide scripts lie, are wide
/// here, and lead bytes that no valid text has still take their followers along.
ColumnShare PaddingShare(unsigned char lead) {
  if (lead >= 192 && lead <= 223) return {2, 1.0};
  if (lead >= 228 && lead <= 233) return {3, 1.8};
  if (lead >= 224 && lead <= 239) return {3, 1.0};
  if (lead >= 240 && lead <= 247) return {4, 1.0};
  return {1, 1.0};
}

std::string_view TrimSet(std::string_view text, std::string_view set) {
  const std::size_t first = text.find_first_not_of(set);
  if (first == std::string_view::npos) return text.substr(0, 0);
  return text.substr(first, text.find_last_not_of(set) - first + 1);
}

}  // namespace

std::string UpperAscii(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = UpperAscii(c);
  return upper;
}

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = LowerAscii(c);
  return lower;
}

std::string_view TrimBlanks(std::string_view text) {
  return TrimSet(text, " ");
}

std::string_view TrimLeft(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view TrimRight(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view TrimQuotes(std::string_view text) {
  return TrimSet(text, " \"'");
}

std::string Replaced(std::string_view text, char from, char to) {
  std::string result(text);
  std::replace(result.begin(), result.end(), from, to);
  return result;
}

std::vector<std::string_view> SplitAt(std::string_view text, char separator) {
  std::vector<std::string_view> items;
  for (;;) {
    const std::size_t end = text.find(separator);
    items.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return items;
    text.remove_prefix(end + 1);
  }
}

std::string Joined(const std::vector<std::string>& items, std::string_view separator) {
  std::string result;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) result += separator;
    result += items[i];
  }
  return result;
}

std::string RightJustified(std::string_view text, int width) {
  const auto columns = static_cast<std::size_t>(std::max(width, 0));
  std::string result(columns > text.size() ? columns - text.size() : 0, ' ');
  result += text;
  return result;
}

std::string CutOrPad(std::string_view text, int width) {
  const auto columns = static_cast<std::size_t>(std::max(width, 0));
  std::string result(text.substr(0, columns));
  result.resize(columns, ' ');
  return result;
}

std::string QuotedLine(std::string_view line) {
  constexpr std::size_t kLongestQuote = 1000;
  if (line.size() <= kLongestQuote) return std::string(line);
  return std::string(line.substr(0, kLongestQuote)) + " ...";
}

bool IsUtf8(std::string_view text, const TextEncoding& encoding) {
  if (encoding.Utf8Encoded == 'N') return false;
  const auto high = std::find_if(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) > 127; });
  if (high == text.end()) return false;
  if (encoding.Utf8Encoded == 'Y') return true;
  for (auto at = static_cast<std::size_t>(high - text.begin()); at < text.size();) {
    const std::size_t length = CharacterLength(text, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

std::int32_t DisplayLength(std::string_view text, const TextEncoding& encoding) {
  if (!IsUtf8(text, encoding)) return static_cast<std::int32_t>(text.size());
  double columns = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = SequenceLength(ByteAt(text, at));
    columns += length == 3 ? 1.8 : 1.0;
    at += std::max<std::size_t>(length, 1);
  }
  return static_cast<std::int32_t>(std::nearbyint(columns));
}

std::string PadToWidth(std::string_view text, int width, const TextEncoding& encoding) {
  if (!IsUtf8(text, encoding)) return CutOrPad(text, width);
  std::string result;
  double columns = 0;
  for (std::size_t at = 0; std::nearbyint(columns) < width;) {
    const ColumnShare share = PaddingShare(at < text.size() ? ByteAt(text, at) : ' ');
    columns += share.Columns;
    const bool fits = share.Columns == 1.0 || columns - 0.5 <= width;
    const std::size_t left = at < text.size() ? text.size() - at : 0;
    // A sequence that is cut off at the end of the text takes blanks for the bytes it lacks.
    if (fits && left > 0) result += text.substr(at, share.Bytes);
    result.append(fits ? share.Bytes - std::min(share.Bytes, left) : 1, ' ');
    at += share.Bytes;
  }
  return result;
}

std::string SubstituteUtf8(std::string_view text, const TextEncoding& encoding) {
  if (!IsUtf8(text, encoding)) return std::string(text);
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = CharacterLength(text, at);
    if (length == 0) break;
    result += length == 1 ? text[at] : encoding.Utf8Sub;
    at += length;
  }
  return result;
}

}  // namespace tessaly
