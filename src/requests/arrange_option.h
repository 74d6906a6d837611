// The orders of tables as options: order= and direction=.
#pragma once

#include <string>
#include <vector>

#include "requests/request_options.h"

namespace tessaly {

/// Whether order= or direction= is given; then both must be.
bool GivesOrder(const RequestOptions& options);

/// Items as `Arrange=` stores them, for each order and direction: capitals ascending, small letters descending, ties by
/// number. Throws `Refusal`, with `title` before it, if an order or a direction is missing.
std::vector<std::string> OrderCodes(std::string_view title, const RequestOptions& options);

}  // namespace tessaly
