// What random numbers start from.
#pragma once

#include <cstdint>

#include "state/settings.h"
#include "support/host.h"

namespace tessaly {

/// `Seed=`, or the clock's idea: 0 to `kHighestSeed`.
std::int32_t RandomSeed(const Settings& settings, Clock& clock);

}  // namespace tessaly
