// How far one iteration may move a parameter.
#pragma once

#include <algorithm>
#include <cmath>

namespace tessaly {

/// `change` multiplied by 0.9 until it is no longer than `longest`: between nine tenths of it and all of it if it was
/// longer. 0 for what is no number.
inline float ShortenedStep(double change, float longest) {
  constexpr float kShortening = 0.9F;
  // Infinity would never become shorter.
  constexpr double kLongest = 1e30;
  if (std::isnan(change)) return 0;
  auto shortened = static_cast<float>(std::clamp(change, -kLongest, kLongest));
  while (std::fabs(shortened) > longest) shortened *= kShortening;
  return shortened;
}

}  // namespace tessaly
