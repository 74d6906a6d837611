// `Facets=` and the keywords that list facets.
#pragma once

#include <cstdint>

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Most facets, and most data columns of `Facets=`.
constexpr std::int32_t kMostFacets = 255;

/// `Facets=`: sizes the facet table and the columns. Throws `Halt{NumberInvalid}`, and `Halt{FacetsConflict}` when an
/// earlier list has set another number.
void ReadFacets(SpecContext& context, const SplitLine& line);

/// These can come before `Facets=`: the largest facet in the list is then the number of facets.
/// Throw `Halt{NumberInvalid}`.
void ReadNoncenter(SpecContext& context, const SplitLine& line);
void ReadCenter(SpecContext& context, const SplitLine& line);
void ReadPositive(SpecContext& context, const SplitLine& line);
void ReadNegative(SpecContext& context, const SplitLine& line);

}  // namespace tessaly
