// `Dvalues=`: data columns that are not in the data lines.
#pragma once

#include "spec/spec_context.h"
#include "spec/split_line.h"

namespace tessaly {

/// Reads `Dvalues=`: one entry or a block. Throws `Halt{FacetsFirst}`, `Halt{InvalidDvalues}`,
/// `Halt{DvaluesFieldProblem}`, and `Halt{ExtraSpecificationInvalid}` for a block in the extra specifications.
void ReadDvalues(SpecContext& context, const SplitLine& line);

/// Gives the entries to their columns, whatever `Entered=` has made of these. Columns that supply others are in use.
/// Throws `Halt{InvalidDvalues}`, `Halt{DvaluesFieldProblem}`, `Halt{DvaluesUndefinedFacet}` for a source without
/// position, and `Halt{DvaluesCircular}`, with `at` at the line of the entry.
void ApplyDvalues(const std::vector<DvaluesEntry>& entries, FieldMap& fields, InputLine& at);

}  // namespace tessaly
