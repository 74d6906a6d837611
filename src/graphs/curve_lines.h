// The numbers of curves as a table for other programs.
#pragma once

#include "graphs/curve_plot.h"
#include "output/text_output.h"

namespace tessaly {

/// The heading line of the table: "scale,series,x,y".
void WriteCurveHeading(TextOutput& file);

/// A line for each point of the plot, in drawing order: place of the scale, name of the series, x and y. Gaps have
/// neither x nor y. Names are quoted by RFC 4180.
void WriteCurveLines(const CurvePlot& plot, TextOutput& file);

}  // namespace tessaly
