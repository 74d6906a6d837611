#include "run/recent_files.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include "run/registry_store.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Empty where nothing is kept.
using Slots = std::array<std::string, 21>;

std::pair<std::string, std::string> PlaceOf(std::size_t slot) {
  return {std::string(kRecentFilesKey), BareText(static_cast<std::int64_t>(slot))};
}

Slots SlotsOf(const RegistryValues& values) {
  Slots slots;
  for (std::size_t slot = 0; slot < slots.size(); ++slot)
    if (const auto found = values.find(PlaceOf(slot)); found != values.end()) slots[slot] = found->second;
  return slots;
}

void Keep(const Slots& slots, RegistryValues& values) {
  for (std::size_t slot = 0; slot < slots.size(); ++slot) {
    if (slots[slot].empty()) {
      values.erase(PlaceOf(slot));
    } else {
      values[PlaceOf(slot)] = slots[slot];
    }
  }
}

std::string FullPath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  if (error) return path;
  // Behind a link, ".." is not where its text says.
  const std::filesystem::path plain = absolute.lexically_normal();
  return (std::filesystem::equivalent(plain, absolute, error) ? plain : absolute).string();
}

void MoveToFront(const std::string& path, Slots& slots) {
  auto slot = std::find(slots.begin(), slots.end(), path);
  if (slot == slots.end()) slot = std::find(slots.begin(), slots.end(), std::string());
  if (slot == slots.end()) --slot;
  *slot = path;
  std::rotate(slots.begin(), slot, slot + 1);
}

bool HasFile(const std::string& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code unknown;
    if (!entry->is_directory(unknown)) return true;
  }
  return false;
}

bool StillThere(const std::string& path) {
  if (path.ends_with('/')) return HasFile(path);
  std::error_code error;
  return std::filesystem::exists(path, error) && !std::filesystem::is_directory(path, error);
}

/// Empties the slots of what is gone or stands there twice, and gives the others.
std::vector<std::string> Refresh(Slots& slots) {
  std::vector<std::string> listed;
  for (std::string& path : slots) {
    if (path.empty()) continue;
    const bool twice = std::find(listed.begin(), listed.end(), path) != listed.end();
    if (twice || !StillThere(path)) {
      path.clear();
    } else {
      listed.push_back(path);
    }
  }
  return listed;
}

}  // namespace

std::vector<std::string> AddRecentFile(const std::string& store, const std::string& path) {
  if (path.empty()) return RefreshRecentFiles(store);
  const std::string full = FullPath(path);
  std::vector<std::string> listed;
  const bool kept = UpdateRegistry(store, [&](RegistryValues& values) {
    Slots slots = SlotsOf(values);
    MoveToFront(full, slots);
    listed = Refresh(slots);
    Keep(slots, values);
  });
  return kept ? listed : RefreshRecentFiles(store);
}

std::vector<std::string> RefreshRecentFiles(const std::string& store) {
  // A look at the list alone makes no folder and waits for nobody.
  Slots slots = SlotsOf(ReadRegistry(store));
  const Slots before = slots;
  std::vector<std::string> listed = Refresh(slots);
  if (slots == before) return listed;
  UpdateRegistry(store, [&](RegistryValues& values) {
    Slots present = SlotsOf(values);
    listed = Refresh(present);
    Keep(present, values);
  });
  return listed;
}

}  // namespace tessaly
