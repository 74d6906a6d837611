// The order of the scales in reports.
#pragma once

#include "state/elements.h"
#include "state/facets.h"
#include "state/models.h"
#include "state/scales.h"

namespace tessaly {

/// Lists the scales that have steps and observations: by the element numbers of their statements position by position
/// (a `#` position counts as its cell's element), then by definition, then by the statement's text.
void OrderScales(const FieldMap& fields, const ElementTable& elements, const ModelTables& models, ScaleTables& scales);

}  // namespace tessaly
