// How reports name elements and facets.
#pragma once

#include <string>

#include "state/elements.h"
#include "state/facets.h"
#include "support/bytes.h"

namespace tessaly {

/// Number and label of an element as a table shows them, padded to the widths of its facet and to at least `minimum`
/// columns. Blanks for no element; empty for a facet with nothing to print.
std::string ElementCell(const Facet& facet, ElementIndex element, const ElementTable& elements, int minimum,
                        const TextEncoding& encoding);

/// The heading over a column of element cells; empty for a facet with nothing to print.
std::string FacetHead(const Facet& facet, const TextEncoding& encoding);

/// The word of a status in the fit columns.
std::string StatusWord(ElementStatus status);

}  // namespace tessaly
