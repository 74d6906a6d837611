// What the program remembers of its use: texts by key and name, in one small file of the user's.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace tessaly {

/// Names "0" (the newest) to "20".
constexpr std::string_view kRecentFilesKey = "Software\\Tessaly\\RecentFiles";
/// Name "ShowWelcome": "No" once the user wants no welcome any more.
constexpr std::string_view kWelcomeKey = "Software\\Tessaly\\TessalyWelcome";

/// Values by key and name.
using RegistryValues = std::map<std::pair<std::string, std::string>, std::string>;

/// All values of the file `store`: none if it is missing or cannot be read; lines that make no sense are passed over.
/// Nothing of a run depends on the store, so there is no failure.
RegistryValues ReadRegistry(const std::string& store);

/// Lets `change` change the values while no other process does. False if they cannot be kept, in which case `change`
/// may not have been called and the file is as it was. An unreadable text file gives way to a good one.
bool UpdateRegistry(const std::string& store, const std::function<void(RegistryValues&)>& change);

/// The value, or an empty text.
std::string GetRegistryString(const std::string& store, std::string_view key, std::string_view name);
/// False if the value cannot be kept.
bool SetRegistryString(const std::string& store, std::string_view key, std::string_view name, std::string_view value);
bool DeleteRegistryValue(const std::string& store, std::string_view key, std::string_view name);

}  // namespace tessaly
