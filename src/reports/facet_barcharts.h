// Barcharts of the elements of a facet, the "Facet Summary" behind the rulers of Table 6.
#pragma once

#include <string>
#include <vector>

#include "reports/report_writer.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// The barcharts that `Barcharts=` asks for of one facet, one below the other, with neutral box codes. Elements without
/// observations stay out. Measures and standard errors (user units), mean-squares, ZStds and fair averages have the
/// same axis in all facets, infit and outfit the same; other items have the axis of their facet.
std::vector<std::string> FacetBarcharts(FacetNumber facet, const Analysis& analysis);

/// Writes the summary of every facet with something to print, as far as `Barcharts=` wants them.
void FacetSummaries(const Analysis& analysis, ReportWriter& report, Console& console);

}  // namespace tessaly
