// `Esubtotals=`: the block as Table 1 has it, and the table of what was observed with what.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "estimate/cross_reference.h"
#include "reports/report_writer.h"
#include "state/analysis.h"

namespace tessaly {

/// The lines of the block, which a specification can hold as they are; none without targets.
std::vector<std::string> EsubtotalsBlock(const std::map<std::int32_t, std::vector<std::int32_t>>& esubtotals);

/// Writes a line for each element: its record index, then its entry for each facet (record index, 0 for none, -1 for
/// several elements).
void WriteEsubtotals(const ElementCrossReference& references, const Analysis& analysis, ReportWriter& report);

}  // namespace tessaly
