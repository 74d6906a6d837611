// Empirical curves: what was observed, gathered in bins of a chosen width.
#pragma once

#include <cstdint>
#include <vector>

#include "graphs/curve_plot.h"
#include "graphs/curve_table.h"
#include "graphs/empirical_data.h"

namespace tessaly {

/// What is gathered, and within what bounds it is drawn.
struct EmpiricalRequest {
  const EmpiricalData& Data;
  /// Place of the scale in the reports, from 1.
  std::int32_t Scale;
  /// Width of a bin, user units.
  float Width;
  const YAxisSettings& Y;
  /// When so many points are finished, all that is left forms one more.
  std::int32_t MostPoints;
};

/// The mean observed score of a bin, at the mean measure of its observations, and the bounds between which 95% of such
/// means lie under the model (on the data's numbering).
struct EmpiricalPoint {
  float X = 0;
  float Mean = 0;
  float Upper = 0;
  float Lower = 0;
};

/// In ascending X. Means and bounds are held a little inside the y-axis, where they can be seen.
std::vector<EmpiricalPoint> EmpiricalCurve(const EmpiricalRequest& request, const CurveTable& model);

/// The share of each ordinal category among the observations of each bin. X ascends and is common to all categories.
struct EmpiricalShares {
  std::vector<float> X;
  /// By category, then bin.
  std::vector<std::vector<float>> Share;
};

/// Shares of categories 0..`top`, held a little inside the y-axis; empty without steps.
EmpiricalShares EmpiricalCategoryCurves(const EmpiricalRequest& request, std::int32_t top);

}  // namespace tessaly
