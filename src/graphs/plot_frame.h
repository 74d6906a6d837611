// The rectangle that curves are drawn in, and where points lie on the page.
#pragma once

#include <vector>

#include "graphs/curve_plot.h"
#include "graphs/picture_axis.h"
#include "graphs/svg_page.h"

namespace tessaly {

struct PlotFrame {
  /// Spans both axes.
  SvgBox Box;
  PictureAxis X;
  PictureAxis Y;

  /// On the page, perhaps outside the box. The coordinates are finite.
  SvgPoint At(CurvePoint point) const {
    return {Box.Left + X.Share(double(point.X)) * Box.Width(), Box.Bottom - Y.Share(double(point.Y)) * Box.Height()};
  }
  /// The points of a curve between its gaps; a point that is no number is a gap.
  std::vector<std::vector<SvgPoint>> Runs(const Series& curve) const;
};

}  // namespace tessaly
