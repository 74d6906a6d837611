// What stands side by side on a Wright map.
#pragma once

#include <string>
#include <vector>

#include "graphs/picture_axis.h"
#include "graphs/svg_page.h"

namespace tessaly {

/// The axis of a map on its page: the highest measure at the top.
struct MapAxis {
  double Top = 0;
  double Bottom = 0;
  /// User units.
  PictureAxis Scale;

  /// What stands at an end of the axis has room beyond it.
  static constexpr double kMargin = 2;

  double Height() const { return Bottom - Top; }
  double YOf(double measure) const { return Bottom - Scale.Share(measure) * Height(); }
};

/// A column, already at its heights; where it stands on the page is still open.
class MapColumn {
 public:
  virtual ~MapColumn() = default;

  /// A display text.
  virtual std::string Heading() const = 0;
  /// The width at which nothing is shortened, and the one below which nothing can be read.
  virtual double NaturalWidth() const = 0;
  virtual double LeastWidth() const = 0;
  /// Draws it from `left` on; what is said below the axis takes `kFootHeight`.
  virtual void Draw(SvgPage& page, double left, double width) = 0;
  /// What readers must know to understand it, known when it is drawn; empty for nothing.
  virtual std::string Note() const { return {}; }
};

constexpr double kFootHeight = 4;

/// Widths of columns that together take `available`, if that is no less than all of `least`: the natural ones made
/// wider in proportion, or the widest of them cut to a common width.
std::vector<double> ShareWidth(const std::vector<double>& natural, const std::vector<double>& least, double available);

}  // namespace tessaly
