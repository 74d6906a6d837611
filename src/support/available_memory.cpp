#include "support/available_memory.h"

#include <charconv>
#include <fstream>
#include <limits>
#include <string>

namespace tessaly {

std::uint64_t AvailableMemory() {
  constexpr std::string_view kName = "MemAvailable:";
  std::ifstream file("/proc/meminfo");
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(kName)) continue;
    const std::size_t digits = line.find_first_not_of(' ', kName.size());
    std::uint64_t kibibytes = 0;
    if (digits != std::string::npos) std::from_chars(line.data() + digits, line.data() + line.size(), kibibytes);
    if (kibibytes > 0) return kibibytes * 1024;
  }
  return std::numeric_limits<std::uint64_t>::max();
}

}  // namespace tessaly
