// The category probabilities of one observation, wherever they stand.
#pragma once

#include <cstdint>

namespace tessaly {

/// Looked at, not owned.
struct Probabilities {
  /// By ordinal category, from 0.
  const float* Table = nullptr;
  /// Highest category that was computed; above it probabilities are 0.
  std::int32_t Top = 0;

  float operator[](std::int32_t k) const { return k <= Top ? Table[k] : 0.0F; }
};

}  // namespace tessaly
