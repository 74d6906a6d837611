#include "spec/settings_location.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "support/bytes.h"

namespace tessaly {

namespace {

constexpr std::string_view kSettingsFile = "/tessaly/tessaly.ini";
constexpr std::string_view kRecentFiles = "/tessaly/recent.ini";
constexpr std::string_view kSystemFolder = "/etc/xdg";

/// Relative folders in these variables do not count.
bool IsAbsolute(std::string_view folder) {
  return folder.starts_with('/');
}

std::string UserFolder(const SettingsEnvironment& environment) {
  if (IsAbsolute(environment.ConfigHome)) return environment.ConfigHome;
  return IsAbsolute(environment.Home) ? environment.Home + "/.config" : std::string();
}

/// The least important first, other than in the variable.
std::vector<std::string> SystemFiles(std::string_view folders) {
  if (folders.empty()) folders = kSystemFolder;
  std::vector<std::string> files;
  for (const std::string_view folder : SplitAt(folders, ':'))
    if (IsAbsolute(folder)) files.push_back(std::string(folder).append(kSettingsFile));
  std::reverse(files.begin(), files.end());
  return files;
}

/// Holds when the run goes to another folder.
std::string Absolute(const std::string& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return error ? path : absolute.string();
}

}  // namespace

SettingsLocation LocateSettings(const SettingsEnvironment& environment) {
  SettingsLocation location;
  const std::string folder = UserFolder(environment);
  if (!folder.empty()) location.RecentFiles = std::string(folder).append(kRecentFiles);
  location.NamedByUser = !environment.SettingsFile.empty();
  if (location.NamedByUser) {
    location.UserFile = Absolute(environment.SettingsFile);
  } else {
    location.SettingsFiles = SystemFiles(environment.ConfigFolders);
    if (!folder.empty()) location.UserFile = std::string(folder).append(kSettingsFile);
  }
  if (!location.UserFile.empty()) location.SettingsFiles.push_back(location.UserFile);
  return location;
}

}  // namespace tessaly
