// The options of rulers, be they tables or pictures.
#pragma once

#include "requests/request_options.h"
#include "state/settings.h"

namespace tessaly {

/// vertical=, yardstick= and extremes= into the settings.
void ReadRulerOptions(const RequestOptions& options, Settings& settings);

}  // namespace tessaly
