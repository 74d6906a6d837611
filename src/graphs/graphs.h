// Pictures of the curves of all scales of a finished analysis.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "graphs/curve_plot.h"
#include "graphs/curve_table.h"
#include "graphs/empirical_data.h"
#include "graphs/graph_axes.h"
#include "graphs/graph_scales.h"
#include "model/response_kernel.h"
#include "state/analysis.h"

namespace tessaly {

/// Makes pictures. They share their x-axis. The same request gives the same picture whatever was asked before. When
/// `Uscale=` or the data change, make a new one.
class Graphs {
 public:
  /// `data` may be null: no empirical curves were computed. Keeps references.
  Graphs(const Analysis& analysis, ResponseKernel& kernel, const EmpiricalData* data);

  std::int32_t ScaleCount() const { return static_cast<std::int32_t>(scales_.size()); }
  /// The picture; empty `Curves` if there is nothing to draw.
  CurvePlot Plot(const CurveRequest& request);

 private:
  /// The curves of the scale at `place`, from 1. Kept until another scale is asked for.
  const CurveTable& ComputeCurves(std::int32_t place);

  ResponseKernel& kernel_;
  const EmpiricalData* data_;
  double unit_;
  std::vector<GraphScale> scales_;
  EmpiricalRange range_;
  MeasureGrid grid_;
  std::optional<CurveTable> table_;
  /// The scale of the table.
  std::int32_t place_ = 0;
};

}  // namespace tessaly
