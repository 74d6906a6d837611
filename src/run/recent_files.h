// The files and folders that the user opened last.
#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// Puts `path` in front of the recent files of the file `store`; the 22nd distinct one takes the place of the oldest. A
/// folder ends in "/". Gives the list as `RefreshRecentFiles` does. A store that cannot be written is no failure: it
/// stays as it is.
std::vector<std::string> AddRecentFile(const std::string& store, const std::string& path);

/// The recent files that still exist, and folders that still have a file in them, the newest first and each one once.
/// The others are dropped from the store.
std::vector<std::string> RefreshRecentFiles(const std::string& store);

}  // namespace tessaly
