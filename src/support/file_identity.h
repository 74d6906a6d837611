// Whether two names are names of one file.
#pragma once

#include <string>

namespace tessaly {

/// A text that all names of one file have in common, and no other file's; the file need not exist yet. A link that
/// leads nowhere stands for the file that it would lead to. Empty for the empty name and for devices (/dev/null), of
/// which nothing is lost.
std::string FileIdentity(const std::string& path);

/// Whether `a` and `b` lead to one file, which is no device. Empty names lead nowhere.
bool SameFile(const std::string& a, const std::string& b);

}  // namespace tessaly
