// The lines that say what the tables of a bias run are about.
#pragma once

#include "interaction/bias_terms.h"
#include "reports/report_writer.h"
#include "state/settings.h"

namespace tessaly {

/// Writes the bias facets and an empty line.
void WriteBiasHeading(const BiasTerms& terms, ReportWriter& report);

/// The same, with the meaning of a high bias measure.
void WriteBiasHeading(const BiasTerms& terms, BiasDirection direction, ReportWriter& report);

}  // namespace tessaly
