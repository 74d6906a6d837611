// The known word that a mistyped one is likely to mean.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tessaly {

/// The word of `known` that the fewest insertions, deletions, replacements and exchanges of neighbours make of `word`
/// (Damerau 1964), the first of several; empty if `known` is empty. Only the first 40 bytes of a word count.
std::string_view NearestWord(std::string_view word, std::span<const std::string_view> known);

/// " Did you mean NAME?", with the nearest word.
std::string Suggestion(std::string_view word, std::span<const std::string_view> known);

}  // namespace tessaly
