// How each curve of a picture looks: colours, dashes and markers that can be told apart by colour-blind readers and
// in print without colours.
#pragma once

#include <cstdint>
#include <optional>

#include "graphs/curve_plot.h"
#include "graphs/svg_page.h"

namespace tessaly {

/// How the points of empirical series are joined.
enum class JoinMode { Both = 0, Lines = 1, Points = 2, None = -1 };

enum class MarkerShape { Circle, Square, Triangle, Diamond };

struct Marker {
  MarkerShape Shape = MarkerShape::Circle;
  Color Fill;
};

struct CurveStyle {
  /// Nothing for points alone.
  std::optional<Stroke> Line;
  /// Nothing for a line alone.
  std::optional<tessaly::Marker> Marker;

  bool Drawn() const { return Line || Marker; }
};

/// What lies between the bounds of a confidence band.
constexpr Color kBandFill{222, 236, 236};

/// The look of `series`, which is the `ordinal`th of its role (from 0). Series of the same category share a colour.
CurveStyle StyleOf(const Series& series, std::int32_t ordinal, GraphKind kind, JoinMode join);

/// Draws a marker with a black outline.
void DrawMarker(SvgPage& page, SvgPoint at, const Marker& marker);

/// Half of the height of a marker.
constexpr double kMarkerRadius = 0.75;

}  // namespace tessaly
