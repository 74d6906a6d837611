// From what the user writes to the record of an element: runs for every element reference of every data line.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "state/elements.h"
#include "state/facets.h"

namespace tessaly {

/// Record of element `number` in `facet`: 0 for the null element, -1 if it is not in the facet. Remembers the last
/// number looked up by search.
ElementIndex FindElement(std::int32_t number, Facet& facet, const ElementTable& elements, std::int32_t nullElement);
/// The same, followed to the element that stands in for it.
ElementIndex FindElementFollow(std::int32_t number, Facet& facet, const ElementTable& elements,
                               std::int32_t nullElement);

/// An element number, or the two ends of a range in the order written.
struct ElementRange {
  std::int32_t First = 0;
  std::int32_t Second = 0;
};

/// The whole number from 0 to `kHighestElementNumber` that `text` begins with, or nothing: it is no such number, or it
/// reads 0 and does not begin with a digit.
std::optional<std::int32_t> ParseElementNumber(std::string_view text);
/// A single number or a range "low-high" ("_" counts as "-"), or nothing if it is not that.
std::optional<ElementRange> ParseElementRange(std::string_view text);

}  // namespace tessaly
