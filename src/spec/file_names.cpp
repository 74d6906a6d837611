#include "spec/file_names.h"

#include <filesystem>
#include <system_error>

#include "support/bytes.h"

namespace tessaly {
namespace {

constexpr std::string_view kSeparators = "/\\";

bool Exists(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::exists(path, error) && !error;
}

bool IsRelative(std::string_view name) {
  return name.empty() || kSeparators.find(name.front()) == std::string_view::npos;
}

}  // namespace

std::string_view FolderOf(std::string_view path) {
  return path.substr(0, path.find_last_of(kSeparators) + 1);
}

std::string ExtensionOf(std::string_view path) {
  const std::string_view name = path.substr(FolderOf(path).size());
  const std::size_t point = name.rfind('.');
  return point == std::string_view::npos ? std::string() : LowerAscii(name.substr(point));
}

std::string FindInputFile(std::string_view name, std::string_view folder) {
  const std::string asWritten(name);
  const std::string withSlashes = Replaced(name, '\\', '/');
  if (Exists(asWritten)) return asWritten;
  if (Exists(withSlashes)) return withSlashes;
  if (!folder.empty() && IsRelative(name)) {
    std::string path(folder);
    if (kSeparators.find(path.back()) == std::string_view::npos) path += '/';
    if (Exists(path + asWritten)) return path + asWritten;
    if (Exists(path + withSlashes)) return path + withSlashes;
  }
  return asWritten;
}

}  // namespace tessaly
