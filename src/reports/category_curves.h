// The curves of a rating scale as line-printer plots: its category probabilities and its expected score.
#pragma once

#include <string>
#include <vector>

#include "model/measure_axis.h"
#include "model/response_kernel.h"
#include "reports/reported_scale.h"

namespace tessaly {

/// The lines of both plots over `axis`, with neutral box codes. `crossTicks`: ticks are crosses in the frame, because
/// text has no tees to show them.
std::vector<std::string> CategoryCurves(const ReportedScale& scale, const MeasureAxis& axis, float uscale,
                                        bool crossTicks, ResponseKernel& kernel);

}  // namespace tessaly
