// The files that `Data=` names.
#pragma once

#include <string>
#include <vector>

#include "support/host.h"

namespace tessaly {

/// The names joined with "+" in `dataFileName`, without outer quotes; empty names are left out.
std::vector<std::string> DataFileNames(const std::string& dataFileName);

/// Where the data file `name` lies (relative names from the current folder, then from `specFolder`).
/// Throws `Halt{FileNotFound}`, and `Halt{InvalidFileFormat}` for a file of another program, which is told by its
/// extension; each after a warning.
std::string FindDataFile(const std::string& name, const std::string& specFolder, Console& console);

}  // namespace tessaly
