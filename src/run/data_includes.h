// The files that data files include, looked for where a report would take the place of a file.
#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// Whether `path` is a file with contents that are no earlier report.
bool HoldsOtherText(const std::string& path);

/// The paths of all files that the data files `files` include ("% name"), as far as they can be read. Relative names
/// are looked for in the current folder, then in `folder`. Pipes and devices are left alone.
std::vector<std::string> IncludedByData(const std::vector<std::string>& files, const std::string& folder);

}  // namespace tessaly
