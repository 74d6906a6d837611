// Single keys of a terminal.
#pragma once

#include <optional>
#include <string>

namespace tessaly {

/// Waits for a key of the terminal at standard input: "F4" and "F5", empty for Enter, the character of any other key
/// that has one. Nothing at the end of the input and for a signal. The key is not shown.
std::optional<std::string> ReadKey();

}  // namespace tessaly
