// The lines at the foot of a measurement table: separation, reliability, chi-squares, agreement.
#pragma once

#include <string>
#include <vector>

#include "reports/measure_summaries.h"
#include "state/agreement.h"
#include "state/settings.h"

namespace tessaly {

/// "... chi-square: ..." with its degrees of freedom and probability.
std::string ChiSquareLine(double chi, double freedom, const std::string& label);

/// Root mean square error, true standard deviation, separation, strata and reliability (Wright & Masters 1982), without
/// and with extreme elements, as a population and as a sample. Empty for fewer than two elements.
std::vector<std::string> SeparationLines(const RowSummaries& summaries, const Settings& settings, bool ofRaters);

/// Whether all measures could be the same, and whether they could be a sample of a normal distribution. Empty for fewer
/// than two elements.
std::vector<std::string> ChiSquareLines(const RowSummaries& summaries, const Settings& settings);

std::string AgreementLine(const Agreement& agreement);

}  // namespace tessaly
