// The text of a request: a verb, and options with values.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// A request as the user wrote it, such as `table7 facets=2 order=measure file="my table.txt"`. Names are in small
/// letters.
struct RequestLine {
  struct Option {
    std::string Name;
    std::string Value;
  };
  std::string Verb;
  std::vector<Option> Options;
  /// Words behind the verb that have no "=".
  std::vector<std::string> Words;
};

/// Tells the words of a request apart. A value that holds blanks stands between double quotes or apostrophes; a quote
/// that does not begin a value stands for itself. The verb of an empty line is empty. Throws `Refusal` for a quote
/// without its partner and for an option that is given twice.
RequestLine ReadRequestLine(std::string_view line);

}  // namespace tessaly
