// Whether two names are names of one file.
#pragma once

#include <string>

namespace tessaly {

/// Whether `a` and `b` lead to one file, which need not exist yet. Empty names lead nowhere.
bool SameFile(const std::string& a, const std::string& b);

}  // namespace tessaly
