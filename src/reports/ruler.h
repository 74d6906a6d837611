// One ruler of Table 6: a measure axis down the page, a column for each facet and each rating scale.
#pragma once

#include <cstddef>
#include <span>

#include "model/response_kernel.h"
#include "reports/report_writer.h"
#include "reports/ruler_axis.h"
#include "reports/vertical_spec.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Most scales that a ruler has a column for.
constexpr std::size_t kMostScaleColumns = 200;

/// Writes a ruler of those of `elements` (ascending) that belong to facets of `columns`: a line that repeats what it is
/// made of, and, if an element can be placed, the picture, with the models of its scales below.
void WriteRuler(const RulerColumns& columns, const Yardstick& yardstick, const RulerAxis& axis,
                std::span<const ElementIndex> elements, const Analysis& analysis, ResponseKernel& kernel,
                ReportWriter& report, Console& console);

}  // namespace tessaly
