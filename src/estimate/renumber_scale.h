// Ordinal categories of a scale from what was observed.
#pragma once

#include "model/response_kernel.h"
#include "state/models.h"
#include "state/scales.h"

namespace tessaly {

/// Renumbers the categories of a scale after a recount: unused categories are closed up, or kept as categories of
/// probability 0 inside the observed range with `keep`. For a binomial or Poisson scale the observed value of its
/// discrimination statistic is formed instead. Gives whether the top category changed, so that counts must be made
/// anew.
bool RenumberScale(ScaleNumber scale, ModelType type, bool keep, const ResponseKernel& kernel, ScaleTables& scales);

/// All scales. Gives whether counts must be made anew.
bool RenumberScales(const ModelTables& models, const ResponseKernel& kernel, ScaleTables& scales);

}  // namespace tessaly
