// The legend below the curves of a picture.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "graphs/curve_style.h"

namespace tessaly {

/// A curve that is drawn, and how.
struct StyledCurve {
  const Series* Curve = nullptr;
  CurveStyle Style;
};

/// Names and samples of `curves` in as many columns as have room from `left` to `right`, from `top` down; the end of a
/// long list is only counted. Gives where the legend ends.
double DrawLegend(SvgPage& page, std::span<const StyledCurve> curves, double left, double right, double top);

}  // namespace tessaly
