// Narrow bins along the measure.
#pragma once

#include <cstdint>

namespace tessaly {

/// Bins of equal width along the measure (logit), numbered from 1: 100 to a logit, fewer if there were more than 32,760
/// in all.
class MeasureBins {
 public:
  /// From `low` to `high`; over two logits around `low` if `high` is no higher. An end without bounds counts as 0.
  MeasureBins(float low, float high);

  /// The bin nearest to `measure`; the one at the end for measures outside. `measure` is a number.
  std::int32_t BinOf(float measure) const;
  /// Logit, of bin 1..Count().
  double MeasureOf(std::int32_t bin) const { return (bin - 1) / density_ + low_; }
  std::int32_t Count() const { return count_; }

 private:
  double low_;
  /// Bins to a logit.
  double density_;
  std::int32_t count_;
};

}  // namespace tessaly
