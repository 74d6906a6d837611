// The unit of every axis of measures: user units without sign and origin.
#pragma once

#include <algorithm>
#include <cmath>

namespace tessaly {

/// User units to a logit, |`uscale`|, held at what singles of measures can bear.
inline double UserUnit(float uscale) {
  constexpr double kLeast = 1e-12;
  constexpr double kMost = 1e12;
  return std::isnan(uscale) ? 1.0 : std::clamp(std::fabs(static_cast<double>(uscale)), kLeast, kMost);
}

}  // namespace tessaly
