// `Delements=`: whether data refer to elements by number or by label.
#pragma once

#include <string_view>

#include "state/facets.h"
#include "support/host.h"

namespace tessaly {

/// Kinds of reference by facet, from the items of `Delements=` in capitals. An item with a facet number goes before
/// items without. Items without N or L are told in a warning and ignored.
void ParseDelements(std::string_view delements, std::int32_t facetCount, FieldMap& fields, Console& console);

}  // namespace tessaly
