// File names inside specifications: either separator, relative to the current folder or to the specification's.
#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// Folder part of a path with its last separator ("/" or "\"); empty for a bare name.
std::string_view FolderOf(std::string_view path);
/// The extension of a path in small letters with its point; empty for none.
std::string ExtensionOf(std::string_view path);
/// Where the input file `name` lies: as it stands, with "\" taken for "/", or from `folder`. The first that exists; if
/// none does, `name` itself.
std::string FindInputFile(std::string_view name, std::string_view folder);

}  // namespace tessaly
