// Category tables before the first pass.
#pragma once

#include "state/models.h"
#include "state/scales.h"
#include "state/settings.h"

namespace tessaly {

/// Sizes the category tables of all scales (the raw counts are kept) and fills them: counts from the raw counts,
/// thresholds (user units / `Uscale=`) and discriminations from the rating scale definitions.
void PrepareScales(const ModelTables& models, const Settings& settings, ScaleTables& scales);

/// Whether the value field of a category line holds a number; one that reads 0 must hold a "0".
bool HasValue(const CategoryEntry& entry);

}  // namespace tessaly
