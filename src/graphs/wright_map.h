// The measures of all facets on one axis (Wright & Masters 1982; Wilson 2005) as a picture for the page of a journal.
#pragma once

#include <string>

#include "model/response_kernel.h"
#include "state/analysis.h"

namespace tessaly {

/// An SVG file of the first ruler of `vertical` (as `Vertical=` has it) with the range and the place of extremes of
/// `yardstick` (as `Yardstick=` has them): the axis and the columns of the first ruler in Table 6.0. 8 cm wide for up
/// to three columns, up to 16 cm for more, and up to 22 cm high. Empty if `vertical` begins with "N".
std::string WrightMap(const std::string& vertical, const std::string& yardstick, const Analysis& analysis,
                      ResponseKernel& kernel);

}  // namespace tessaly
