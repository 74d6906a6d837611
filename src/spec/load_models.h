// From the lines of `Models=` to the table of model statements.
#pragma once

#include <vector>

#include "spec/spec_context.h"
#include "state/facets.h"
#include "state/models.h"

namespace tessaly {

/// Fills the statement table and marks the positions in use; without statements there is one for all elements and
/// dichotomies. Tells of the first text that means something else than it seems to. Throws
/// `Halt{TooManyModelComponents}`, `Halt{TooFewModelComponents}`, `Halt{NonNumericWeight}` and
/// `Halt{InvalidElementNumber}`, with `at` at the statement and the offending field.
void LoadModels(const std::vector<StatementLine>& lines, FieldMap& fields, ModelTables& models, InputLine& at,
                Console& console);

}  // namespace tessaly
