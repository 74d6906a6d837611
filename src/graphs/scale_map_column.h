// The column of a rating scale on a Wright map: where on the axis each category is expected.
#pragma once

#include <memory>
#include <string>

#include "graphs/map_column.h"
#include "model/response_kernel.h"
#include "state/analysis.h"

namespace tessaly {

/// A bar cut at the half-score points, with the raw category of each piece beside it and, with `withLabels`, what the
/// definition calls it; the extreme categories, which have no end, in parentheses. A place stands for the net measure
/// that lies as far from the origin of the scale as its own measure lies from `Umean=`. The scale has two steps or
/// more.
std::unique_ptr<MapColumn> MakeScaleColumn(ScaleNumber scale, std::string heading, bool withLabels, const MapAxis& axis,
                                           const Analysis& analysis, ResponseKernel& kernel);

}  // namespace tessaly
