// The categories' names on their curves, so that a picture can be read without its colours and its legend.
#pragma once

#include "graphs/plot_frame.h"

namespace tessaly {

/// Writes the part of each model curve's name behind its colon on the curve: at the peak, or where the curve is
/// halfway up for kinds whose curves rise from 0 to 1. A curve without a free place there, and a picture of one curve
/// or of too many, goes without.
void DrawCurveLabels(SvgPage& page, const CurvePlot& plot, const PlotFrame& frame);

}  // namespace tessaly
