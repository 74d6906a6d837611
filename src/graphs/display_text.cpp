#include "graphs/display_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "support/bytes.h"

namespace tessaly {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

/// Advance widths of Helvetica, characters 32 to 126, in thousandths of the size.
constexpr std::array<std::int16_t, 95> kWidths = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333,  278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556, 1015, 667, 667, 722, 722, 667,
    611, 778, 722, 278, 500, 667, 556, 833, 722, 778, 667, 778, 722, 667,  611, 722, 667, 944, 667,
    667, 611, 278, 278, 278, 469, 556, 333, 556, 556, 500, 556, 556, 278,  556, 556, 222, 222, 500,
    222, 833, 556, 556, 556, 556, 333, 500, 278, 556, 500, 722, 500, 500,  500, 334, 260, 334, 584};
/// Letters of other alphabets, most of which are narrower, and everything from U+1100 on.
constexpr int kForeignWidth = 700;
constexpr int kWideWidth = 1050;
constexpr char32_t kFirstWide = 0x1100;

/// The first character of a text; no bytes for bytes that are no UTF-8.
struct Character {
  char32_t Code = 0;
  std::size_t Bytes = 0;
};

Character FirstCharacter(std::string_view text) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {};
  char32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t at = 1; at < length; ++at) {
    if ((byte(at) & 0xC0U) != 0x80) return {};
    code = code << 6 | (byte(at) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kLeast[length] || code > 0x10FFFF || surrogate || code == 0xFFFE || code == 0xFFFF) return {};
  return {code, length};
}

bool IsControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

int Thousandths(char32_t code) {
  if (code >= 32 && code < 127) return kWidths[code - 32];
  const bool punctuation = code >= 0x2010 && code <= 0x2212;
  return code < kFirstWide || punctuation ? kForeignWidth : kWideWidth;
}

/// Bytes of the longest start of `text` that is no wider than `width`, and how wide it is.
struct Fit {
  std::size_t Bytes = 0;
  double Width = 0;
};

Fit FitInto(std::string_view text, double size, double width) {
  Fit fit;
  while (fit.Bytes < text.size()) {
    const Character next = FirstCharacter(text.substr(fit.Bytes));
    const double wider = fit.Width + Thousandths(next.Code) * size / 1000;
    if (wider > width) break;
    fit = {fit.Bytes + std::max<std::size_t>(next.Bytes, 1), wider};
  }
  return fit;
}

/// Where the last character of a display text begins.
std::size_t LastCharacter(std::string_view text) {
  std::size_t at = text.size() - 1;
  while (at > 0 && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80) --at;
  return at;
}

/// Where a line ends that has room for `room` bytes: behind a blank or comma, or where the room ends.
std::size_t LineEnd(std::string_view text, std::size_t room) {
  const std::size_t at = text.substr(0, room + 1).find_last_of(" ,");
  const std::size_t end = at == std::string_view::npos ? 0 : std::min(at + 1, room);
  // A line of at least one character: the text must come to an end.
  const std::size_t least = std::max<std::size_t>(FirstCharacter(text).Bytes, 1);
  return std::max(end > room / 3 ? end : room, least);
}

}  // namespace

std::string DisplayText(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const Character next = FirstCharacter(text);
    if (next.Bytes == 0) {
      shown += kReplacement;
    } else if (!IsControl(next.Code)) {
      shown += text.substr(0, next.Bytes);
    }
    text.remove_prefix(std::max<std::size_t>(next.Bytes, 1));
  }
  return shown;
}

double TextWidth(std::string_view text, double size) {
  // Wider than any page: no width is infinite.
  constexpr double kEndless = 1e9;
  return FitInto(text, size, kEndless).Width;
}

std::string Shortened(std::string_view text, double size, double width) {
  if (FitInto(text, size, width).Bytes == text.size()) return std::string(text);
  const double room = width - TextWidth(kEllipsis, size);
  return std::string(TrimRight(text.substr(0, FitInto(text, size, room).Bytes))).append(kEllipsis);
}

std::string ShortenedInside(std::string_view text, double size, double width) {
  constexpr double kEndShare = 0.4;
  if (FitInto(text, size, width).Bytes == text.size()) return std::string(text);
  const double room = width - TextWidth(kEllipsis, size);
  std::size_t end = text.size();
  while (end > 0) {
    const std::size_t at = LastCharacter(text.substr(0, end));
    if (TextWidth(text.substr(at), size) > kEndShare * room) break;
    end = at;
  }
  const std::string_view tail = TrimLeft(text.substr(end));
  const std::string_view head = text.substr(0, FitInto(text.substr(0, end), size, room - TextWidth(tail, size)).Bytes);
  return std::string(TrimRight(head)).append(kEllipsis).append(tail);
}

std::vector<std::string> Wrapped(std::string_view text, double size, double width, std::size_t mostLines) {
  std::vector<std::string> lines;
  for (text = TrimBlanks(text); !text.empty() && lines.size() < mostLines; text = TrimLeft(text)) {
    const std::size_t room = FitInto(text, size, width).Bytes;
    if (room == text.size() || lines.size() + 1 == mostLines) {
      lines.push_back(Shortened(text, size, width));
      break;
    }
    const std::size_t end = LineEnd(text, room);
    lines.emplace_back(TrimRight(text.substr(0, end)));
    text.remove_prefix(end);
  }
  return lines;
}

}  // namespace tessaly
