// Curves as a picture for the page of a journal.
#pragma once

#include <string>
#include <string_view>

#include "graphs/curve_plot.h"
#include "graphs/curve_style.h"

namespace tessaly {

/// An SVG file, 8 cm wide: title, axes, curves inside the shown ranges, and a legend below. `unit` tells what the
/// x-axis counts: "logits", or "user units (1 logit = 10)". `join` is for empirical series that are not smoothed.
/// Without curves the axes stand around the words "Nothing to draw".
std::string CurvePicture(const CurvePlot& plot, JoinMode join, std::string_view unit);

}  // namespace tessaly
