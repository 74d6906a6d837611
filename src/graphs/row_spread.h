// Rows of text that may not overlap: each as near as can be to where it wants to stand.
#pragma once

#include <vector>

namespace tessaly {

/// Places for rows that want to stand at `wanted` (ascending): in the same order, at least `pitch` apart, from `first`
/// to `last`, with the least sum of squared shifts (isotonic regression: Barlow, Bartholomew, Bremner & Brunk 1972).
/// Where there is no room for all, rows run on behind `last`.
std::vector<double> SpreadRows(const std::vector<double>& wanted, double pitch, double first, double last);

}  // namespace tessaly
