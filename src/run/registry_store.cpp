#include "run/registry_store.h"

#include <optional>
#include <vector>

#include "support/failure.h"
#include "support/small_text_file.h"

namespace tessaly {

namespace {

RegistryValues Parsed(const std::vector<std::string>& lines) {
  RegistryValues values;
  std::string key;
  for (const std::string& line : lines) {
    const std::size_t equals = line.find('=');
    if (line.starts_with('[')) {
      key = line.substr(1, line.rfind(']') - 1);
    } else if (equals != std::string::npos) {
      values[{key, line.substr(0, equals)}] = line.substr(equals + 1);
    }
  }
  return values;
}

std::vector<std::string> LinesOf(const RegistryValues& values) {
  std::vector<std::string> lines;
  std::optional<std::string> heading;
  for (const auto& [place, value] : values) {
    const auto& [key, name] = place;
    if (heading != key) lines.push_back("[" + key + "]");
    heading = key;
    lines.push_back(name + "=" + value);
  }
  return lines;
}

}  // namespace

RegistryValues ReadRegistry(const std::string& store) {
  try {
    if (const auto lines = ReadSmallFile(store)) return Parsed(*lines);
  } catch (const Halt&) {
    // A store that cannot be read is one without values.
  }
  return {};
}

bool UpdateRegistry(const std::string& store, const std::function<void(RegistryValues&)>& change) {
  if (store.empty()) return false;
  try {
    const SmallFileUpdate update(store);
    const RegistryValues before = ReadRegistry(store);
    RegistryValues values = before;
    change(values);
    if (values != before) update.Replace(LinesOf(values));
    return true;
  } catch (const Halt&) {
    return false;
  }
}

std::string GetRegistryString(const std::string& store, std::string_view key, std::string_view name) {
  const RegistryValues values = ReadRegistry(store);
  const auto found = values.find({std::string(key), std::string(name)});
  return found == values.end() ? std::string() : found->second;
}

bool SetRegistryString(const std::string& store, std::string_view key, std::string_view name, std::string_view value) {
  return UpdateRegistry(store, [&](RegistryValues& values) { values[{std::string(key), std::string(name)}] = value; });
}

bool DeleteRegistryValue(const std::string& store, std::string_view key, std::string_view name) {
  return UpdateRegistry(store, [&](RegistryValues& values) { values.erase({std::string(key), std::string(name)}); });
}

}  // namespace tessaly
