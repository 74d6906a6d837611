// The rating that an element would get among average elements of the other facets.
#pragma once

#include <cstdint>

#include "model/response_kernel.h"
#include "state/models.h"
#include "state/scales.h"

namespace tessaly {

/// Expected score at `measure` (logit), in raw categories, so that it can be compared with the observed average.
/// `reversed` turns the score over within the observed raw categories.
float FairScore(ScaleNumber scale, ModelType type, float measure, bool reversed, const ScaleTables& scales,
                ResponseKernel& kernel);

}  // namespace tessaly
