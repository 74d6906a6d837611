#include "support/file_identity.h"

#include <filesystem>
#include <system_error>

namespace tessaly {

bool SameFile(const std::string& a, const std::string& b) {
  if (a.empty() || b.empty()) return false;
  std::error_code error;
  if (std::filesystem::equivalent(a, b, error) && !error) return true;
  const std::filesystem::path one = std::filesystem::weakly_canonical(a, error);
  if (error) return false;
  const std::filesystem::path other = std::filesystem::weakly_canonical(b, error);
  return !error && one == other;
}

}  // namespace tessaly
