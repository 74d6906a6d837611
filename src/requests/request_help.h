// What can be asked for, told in lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The verbs with their summaries, or the options of the verb `name`. Throws `Refusal` for an unknown name.
std::vector<std::string> RequestHelp(std::string_view name = {});

}  // namespace tessaly
