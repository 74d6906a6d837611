// Texts in pictures: what can be shown of any bytes, how wide it is, and what of it fits.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// `text` as valid UTF-8: bytes that are none become U+FFFD each, control characters are dropped.
std::string DisplayText(std::string_view text);

/// Fonts of the pictures. All but the last have the widths that `TextWidth` reckons with.
constexpr std::string_view kPictureFonts = "Arial, Helvetica, Liberation Sans, Nimbus Sans, sans-serif";

/// Width of a display text in letters of height `size`, in the unit of `size`.
double TextWidth(std::string_view text, double size);

/// A display text, cut with an ellipsis behind it if it is wider than `width`.
std::string Shortened(std::string_view text, double size, double width);

/// The same with the ellipsis further inside: labels often differ at their ends, "Judge 1" and "Judge 2".
std::string ShortenedInside(std::string_view text, double size, double width);

/// A display text in lines of at most `width`, broken behind blanks and commas where it has any. The last of
/// `mostLines` lines is shortened. No lines for an empty text.
std::vector<std::string> Wrapped(std::string_view text, double size, double width, std::size_t mostLines);

}  // namespace tessaly
