#include "support/file_identity.h"

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <system_error>

#include "support/number_text.h"

namespace tessaly {

namespace {

/// As many as the system follows.
constexpr int kMostLinks = 40;

}  // namespace

std::string FileIdentity(const std::string& path) {
  if (path.empty()) return {};
  struct stat status = {};
  if (stat(path.c_str(), &status) == 0) {
    if (S_ISCHR(status.st_mode)) return {};
    return BareText(static_cast<std::int64_t>(status.st_dev)) + ":" +
           BareText(static_cast<std::int64_t>(status.st_ino));
  }
  std::filesystem::path place(path);
  std::error_code error;
  for (int links = 0; links < kMostLinks && std::filesystem::is_symlink(place, error); ++links)
    place = place.parent_path() / std::filesystem::read_symlink(place, error);
  const std::filesystem::path whole = std::filesystem::weakly_canonical(place, error);
  return error ? place.string() : std::filesystem::absolute(whole, error).string();
}

bool SameFile(const std::string& a, const std::string& b) {
  const std::string identity = FileIdentity(a);
  return !identity.empty() && identity == FileIdentity(b);
}

}  // namespace tessaly
