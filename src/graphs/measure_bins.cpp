#include "graphs/measure_bins.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

constexpr double kFinest = 100;
constexpr double kMostBins = 32760;
/// Beyond this nothing is measured, only run away.
constexpr float kFarthestBin = 1e6F;

double HeldEnd(float measure) {
  return std::isfinite(measure) ? static_cast<double>(std::clamp(measure, -kFarthestBin, kFarthestBin)) : 0.0;
}

}  // namespace

MeasureBins::MeasureBins(float low, float high) : low_(HeldEnd(low)), density_(kFinest) {
  double end = HeldEnd(high);
  if (end <= low_) {
    end = low_ + 1;
    low_ -= 1;
  }
  double count = std::nearbyint((end - low_) * density_ + 1);
  if (count > kMostBins) {
    count = kMostBins;
    density_ = (kMostBins - 1) / (end - low_);
  }
  count_ = static_cast<std::int32_t>(count);
}

std::int32_t MeasureBins::BinOf(float measure) const {
  const double bin = std::nearbyint((static_cast<double>(measure) - low_) * density_ + 1);
  return static_cast<std::int32_t>(std::clamp(bin, 1.0, static_cast<double>(count_)));
}

}  // namespace tessaly
