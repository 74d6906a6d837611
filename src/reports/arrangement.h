// The orders in which measurement tables are asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "state/indexes.h"

namespace tessaly {

/// An item of `Arrange=`: a facet number, if it is for one facet only, and letters.
struct Arrangement {
  std::optional<FacetNumber> Facet;
  /// As the heading of a table shows it.
  std::string Text;
  std::string Letters;

  bool AppliesTo(FacetNumber facet) const { return !Facet || *Facet == facet; }
};

/// The items of a normalised `Arrange=` text.
std::vector<Arrangement> Arrangements(std::string_view arrange);

/// The items that are for no single facet; if there is none, measures in descending order.
std::vector<Arrangement> ArrangementsOfAll(std::string_view arrange);

}  // namespace tessaly
