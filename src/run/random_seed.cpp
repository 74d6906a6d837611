#include "run/random_seed.h"

#include <functional>
#include <string>

namespace tessaly {

std::int32_t RandomSeed(const Settings& settings, Clock& clock) {
  if (settings.Seed) return *settings.Seed;
  const auto ticks = static_cast<std::uint64_t>(clock.Seconds() * 1e6);
  constexpr std::uint64_t kSeeds = std::uint64_t{kHighestSeed} + 1;
  return static_cast<std::int32_t>((ticks ^ std::hash<std::string>()(clock.RunDate())) % kSeeds);
}

}  // namespace tessaly
