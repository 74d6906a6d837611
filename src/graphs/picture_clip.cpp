#include "graphs/picture_clip.h"

#include <algorithm>
#include <optional>

namespace tessaly {

namespace {

struct Segment {
  SvgPoint From;
  SvgPoint To;
};

/// Which part of a line, as shares of its length, is still inside.
struct InsideShares {
  double First = 0;
  double Last = 1;

  /// Cuts off where `start` + share x `change` is below 0.
  void Keep(double start, double change) {
    if (change == 0) {
      if (start < 0) Last = -1;
    } else if (change > 0) {
      First = std::max(First, -start / change);
    } else {
      Last = std::min(Last, -start / change);
    }
  }
};

/// Liang & Barsky (1984).
std::optional<Segment> ClippedSegment(const Segment& segment, const SvgBox& box) {
  const double dx = segment.To.X - segment.From.X;
  const double dy = segment.To.Y - segment.From.Y;
  InsideShares inside;
  inside.Keep(segment.From.X - box.Left, dx);
  inside.Keep(box.Right - segment.From.X, -dx);
  inside.Keep(segment.From.Y - box.Top, dy);
  inside.Keep(box.Bottom - segment.From.Y, -dy);
  if (inside.First > inside.Last) return {};
  const auto at = [&](double share) {
    // Rounding must not lead out of the box again.
    return SvgPoint{std::clamp(segment.From.X + share * dx, box.Left, box.Right),
                    std::clamp(segment.From.Y + share * dy, box.Top, box.Bottom)};
  };
  return Segment{inside.First > 0 ? at(inside.First) : segment.From, inside.Last < 1 ? at(inside.Last) : segment.To};
}

/// The part of an area where `distance` is not below 0.
template <class Distance>
std::vector<SvgPoint> Halved(const std::vector<SvgPoint>& points, const Distance& distance) {
  std::vector<SvgPoint> kept;
  for (std::size_t at = 0; at < points.size(); ++at) {
    const SvgPoint from = points[at == 0 ? points.size() - 1 : at - 1];
    const SvgPoint to = points[at];
    const double before = distance(from);
    const double here = distance(to);
    if ((before < 0) != (here < 0)) {
      const double share = before / (before - here);
      kept.push_back({from.X + share * (to.X - from.X), from.Y + share * (to.Y - from.Y)});
    }
    if (here >= 0) kept.push_back(to);
  }
  return kept;
}

}  // namespace

std::vector<std::vector<SvgPoint>> ClippedLine(std::span<const SvgPoint> points, const SvgBox& box) {
  std::vector<std::vector<SvgPoint>> pieces;
  bool connected = false;
  for (std::size_t at = 1; at < points.size(); ++at) {
    const std::optional<Segment> inside = ClippedSegment({points[at - 1], points[at]}, box);
    if (!inside) {
      connected = false;
      continue;
    }
    if (!connected) pieces.push_back({inside->From});
    pieces.back().push_back(inside->To);
    connected = box.Holds(points[at]);
  }
  return pieces;
}

std::vector<SvgPoint> ClippedArea(std::vector<SvgPoint> points, const SvgBox& box) {
  points = Halved(points, [&](SvgPoint point) { return point.X - box.Left; });
  points = Halved(points, [&](SvgPoint point) { return box.Right - point.X; });
  points = Halved(points, [&](SvgPoint point) { return point.Y - box.Top; });
  return Halved(points, [&](SvgPoint point) { return box.Bottom - point.Y; });
}

}  // namespace tessaly
