// A cleaned specification line as keyword and values.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// Most values of a line.
constexpr std::size_t kMostValues = 32000;

/// A line `keyword = value, value, ...`, or values alone.
struct SplitLine {
  /// As written; empty for a line without keyword.
  std::string Keyword;
  std::vector<std::string> Values;

  /// Value `number`, counted from 1; empty beyond the last.
  std::string_view Value(std::size_t number) const {
    return number <= Values.size() ? std::string_view(Values[number - 1]) : std::string_view();
  }
  /// The line "*" that ends a block.
  bool IsBlockEnd() const { return Keyword.empty() && Value(1) == "*"; }
  /// Not one value has text.
  bool NoValue() const;
};

/// Splits at commas, equals signs, TABs and character 255. A line that begins with a letter has a keyword. Values are
/// trimmed, and the last one loses its outer quotes. What is beyond `kMostValues` stays in the last value.
SplitLine SplitSpecLine(std::string_view work);
/// The same inside a block, where a line that begins with X is a model statement and no keyword.
SplitLine SplitBlockLine(std::string_view work);

}  // namespace tessaly
