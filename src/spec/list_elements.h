// First reading of `Labels=`: which element numbers there are.
#pragma once

#include <cstdint>
#include <vector>

#include "spec/spec_context.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// The two ends of an element range, the lower first. Throws `Halt{InvalidElementNumber}`.
struct AscendingRange {
  std::int32_t Low = 0;
  std::int32_t High = 0;
};
AscendingRange ElementsOf(std::string_view text);

/// Creates the element table in facet and number order, and sets the record ranges of the facets.
/// Throws `Halt` for facets out of range (`FacetOutOfRange`) or declared twice (`FacetTwice`), bad element numbers
/// (`InvalidElementNumber`), too many (`TooManyElements`) or none (`NoElementNumbers`), with `at` at the line.
void ListElements(const std::vector<StoredLine>& block, FacetTable& facets, ElementTable& elements,
                  std::int32_t nullElement, InputLine& at, Console& console);

}  // namespace tessaly
