#include "run/data_includes.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "spec/input_stack.h"
#include "state/analysis.h"
#include "support/failure.h"
#include "support/host.h"
#include "support/line_file.h"

namespace tessaly {

namespace {

bool Regular(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

}  // namespace

bool HoldsOtherText(const std::string& path) {
  if (!Regular(path)) return false;
  try {
    LineFile file(path);
    const std::optional<std::string_view> line = file.Next();
    return line && !line->starts_with("Tessaly") && !line->starts_with("<");
  } catch (const Halt&) {
    return false;
  }
}

std::vector<std::string> IncludedByData(const std::vector<std::string>& files, const std::string& folder) {
  std::vector<std::string> included;
  for (const std::string& file : files) {
    if (!Regular(file)) continue;
    InputLine at;
    Console silence;
    InputStack input(at, silence, folder);
    try {
      input.Open(file, "Data");
      while (input.NextRawLine()) continue;
    } catch (const Halt&) {
      // The data phase will tell.
    }
    included.insert(included.end(), input.Opened().begin(), input.Opened().end());
  }
  return included;
}

}  // namespace tessaly
