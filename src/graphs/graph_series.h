// The curves of one picture as lists of points.
#pragma once

#include <vector>

#include "graphs/curve_plot.h"
#include "graphs/curve_table.h"
#include "graphs/empirical_data.h"
#include "graphs/graph_axes.h"
#include "graphs/graph_scales.h"

namespace tessaly {

/// What the curves of one scale are made of.
struct SeriesSource {
  const GraphScale& Scale;
  /// Place of the scale in the reports, from 1.
  std::int32_t Place;
  const XAxisSettings& X;
  const YAxisSettings& Y;
  const CurveTable& Table;
  /// Null without empirical curves.
  const EmpiricalData* Data;
  /// Width of an empirical bin, and of a logit, in user units.
  float Interval;
  double Unit;
};

/// All series that the kind and the switches of `request` ask for, in drawing order; none if none has a point.
std::vector<Series> BuildSeries(const SeriesSource& source, const CurveRequest& request);

}  // namespace tessaly
