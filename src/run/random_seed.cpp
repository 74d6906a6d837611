#include "run/random_seed.h"

#include <functional>
#include <string>

namespace tessaly {

std::uint64_t RandomSeed(const Settings& settings, Clock& clock) {
  if (settings.Seed) return *settings.Seed;
  const auto ticks = static_cast<std::uint64_t>(clock.Seconds() * 1e6);
  return ticks ^ std::hash<std::string>()(clock.RunDate());
}

}  // namespace tessaly
