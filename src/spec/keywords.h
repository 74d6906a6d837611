// The vocabulary of the specification file: one table.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

enum class KeywordUse {
  /// Only the first occurrence counts.
  Once,
  Repeated,
};

/// One keyword. All texts are meant for the user.
struct Keyword {
  /// With its "=".
  std::string_view Name;
  /// The leading letters that tell it, separated by blanks. Longer ones go before shorter ones.
  std::string_view Prefixes;
  std::string_view Values;
  std::string_view Default;
  /// What it does.
  std::string_view Help;
  void (*Apply)(SpecContext&, const SplitLine&);
  KeywordUse Use = KeywordUse::Once;
  /// The keyword that this one is another form of: one of the two may be given.
  std::string_view OtherFormOf = {};
};

/// All keywords, by name.
std::span<const Keyword> Keywords();

/// The keyword that `text` begins with, in either case; nothing for a text that begins with no letter.
const Keyword* FindKeyword(std::string_view text);
/// Whether the keyword of `line` is `name`.
bool HasKeyword(const SplitLine& line, std::string_view name);

/// The next line of the block of keyword `name` that has a value, or nothing where the block ends: at "*", at the end
/// of the input, and at a line with another keyword, which remains to be read.
std::optional<SplitLine> NextBlockEntry(SpecContext& context, std::string_view name);

/// Marks a keyword as given, so that the specification file cannot change it.
void MarkAsSeen(SpecContext& context, const Keyword& keyword);

/// Applies one line `keyword = value`. A repeated keyword is told on the status line and kept as a comment.
/// Throws `Halt{SpecificationExpected}` for a line without keyword, and what the keyword throws.
void ApplyKeyword(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
