// How a request that is being typed may go on.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "state/analysis.h"

namespace tessaly {

/// The words that may stand in place of the last one of `line` (which is empty behind a blank): verbs, "option=", and
/// "option=value" with the words of a choice, facets and scales by number. Behind a comma within a value, lists go on.
std::vector<std::string> CompletionsOf(std::string_view line, const Analysis& analysis);

/// Whether the last word of `line` is an option whose value is a file name.
bool EndsInFileName(std::string_view line);

}  // namespace tessaly
