// What of a line or an area lies inside a rectangle.
#pragma once

#include <span>
#include <vector>

#include "graphs/svg_page.h"

namespace tessaly {

/// The pieces inside `box` of the line through `points`, which are finite.
std::vector<std::vector<SvgPoint>> ClippedLine(std::span<const SvgPoint> points, const SvgBox& box);

/// The part inside `box` of an area with the corners `points`, which are finite (Sutherland & Hodgman 1974).
std::vector<SvgPoint> ClippedArea(std::vector<SvgPoint> points, const SvgBox& box);

}  // namespace tessaly
