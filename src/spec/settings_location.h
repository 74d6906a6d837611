// Where a user's settings lie.
#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// What the environment says of the user's files. A variable that is not set is empty.
struct SettingsEnvironment {
  /// HOME.
  std::string Home;
  /// XDG_CONFIG_HOME and XDG_CONFIG_DIRS.
  std::string ConfigHome;
  std::string ConfigFolders;
  /// TESSALY_SETTINGS.
  std::string SettingsFile;
  /// TMPDIR.
  std::string TemporaryFolder;
};

/// Paths of the files in which the program remembers.
struct SettingsLocation {
  /// The settings files in the order in which they are read: what a later one says rules.
  std::vector<std::string> SettingsFiles;
  /// The last of them is one that the user named, which ought to be there.
  bool NamedByUser = false;
  /// The one that the user's changes go to; empty if the user has no folder.
  std::string UserFile;
  /// The store of recent files; empty if the user has no folder. It is the user's own, whichever settings are named.
  std::string RecentFiles;
};

/// The places of the XDG Base Directory Specification: "tessaly/tessaly.ini" in the user's configuration folder, above
/// those of the system's. A file named in TESSALY_SETTINGS stands alone.
SettingsLocation LocateSettings(const SettingsEnvironment& environment);

}  // namespace tessaly
