// `Entered=`: which facets the data columns refer to.
#pragma once

#include "spec/spec_context.h"
#include "spec/split_line.h"
#include "state/facets.h"

namespace tessaly {

/// `Entered=`: sets columns and positions. Without any value it has no effect. Warns when the number of columns or of
/// positions is not the one of `Facets=`. Throws `Halt{FacetsFirst}`, `Halt{NumberInvalid}`.
void ReadEntered(SpecContext& context, const SplitLine& line);

/// Columns and positions without `Entered=`: column c has facet c. Columns beyond the facets have none.
void SetIdentityFields(std::int32_t facetCount, FieldMap& fields);

}  // namespace tessaly
