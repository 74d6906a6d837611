// How wide the bins of empirical curves are, and where their edges lie.
#pragma once

#include <cstdint>

#include "graphs/empirical_data.h"

namespace tessaly {

/// A width in user units, a multiple of 0.01, and the place of the control that stands for it: 1 (widest) to 200, on a
/// logarithmic scale.
struct EmpiricalInterval {
  float Width = 1;
  std::int32_t Position = 1;
};

/// The interval at a place of the control.
EmpiricalInterval IntervalAtPosition(std::int32_t position, const EmpiricalRange& range);
/// The interval nearest to `width`: at least 0.01, at most the range in whole units.
EmpiricalInterval IntervalOfWidth(float width, const EmpiricalRange& range);

/// The next width up or down in steps of its second digit.
float StepUp(float width);
float StepDown(float width);

/// The upper edges of the bins, from the lowest up. They lie on multiples of the width, or on odd half multiples,
/// whatever the data. A place on an edge belongs to the bin below it.
class BinEdges {
 public:
  BinEdges(float width, const EmpiricalRange& range);

  /// The upper edge of the bin at hand, single: `first + n width` without the errors of adding up.
  float Edge() const { return edge_; }
  void Next();
  /// Goes on to the first bin that holds `measure`. Takes no longer for a far one.
  void Reach(float measure);

 private:
  float EdgeOf(double steps) const { return static_cast<float>(first_ + steps * width_); }

  double width_;
  double first_ = 0;
  double steps_ = 0;
  float edge_ = 0;
};

}  // namespace tessaly
