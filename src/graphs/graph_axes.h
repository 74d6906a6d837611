// The axes of a picture of curves, and the grid of measures on which curves are computed.
#pragma once

#include <cstdint>

#include "graphs/curve_plot.h"
#include "graphs/empirical_data.h"
#include "graphs/graph_scales.h"
#include "model/category_measures.h"

namespace tessaly {

/// Most rows of the grid.
constexpr std::int32_t kMostGridRows = 201;

/// The x-axis and the grid over its full extent: equal steps, a whole number of them in each step of the axis.
struct MeasureGrid {
  XAxisSettings Axis;
  std::int32_t Steps = 1;

  std::int32_t Rows() const { return Steps + 1; }
  /// User units, of row 1..Rows().
  double MeasureOf(std::int32_t row) const {
    const double extent = static_cast<double>(Axis.FullMax) - static_cast<double>(Axis.FullMin);
    return static_cast<double>(Axis.FullMin) + (row - 1) * extent / Steps;
  }
};

/// The axis that shows all of `curves` and `data`, both in user units, in whole units and round steps, with some room
/// at both ends. `unit`: user units to a logit. Ranges without bounds end at 900,000,000.
MeasureGrid FitXAxis(const CurveRange& curves, const EmpiricalRange& data, double unit);

/// The axis of one kind for `scale`. `largest` is the largest information (ItemInformation) or category information
/// (CategoryInformation) of the scale; other kinds do not need it.
YAxisSettings FitYAxis(GraphKind kind, const GraphScale& scale, float largest);

}  // namespace tessaly
