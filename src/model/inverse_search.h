// From a score or a cumulative probability back to the measure: for tables and curves, never for estimation.
#pragma once

#include <cstdint>

#include "model/response_kernel.h"

namespace tessaly {

/// Where a search ended.
struct ScoreSearch {
  /// Logit.
  float Measure = 0;
  /// Probability of the category nearest to the score; 0 if there is none.
  float Probability = 0;
};

/// The measure whose expected score (ordinal) is `score`, to the last digit of a single; a far end of the line for a
/// score that is out of reach.
ScoreSearch MeasureForScore(ResponseKernel& kernel, ScaleNumber scale, ModelType type, std::int32_t top, float score);

/// The measure (logit) at which the probability of `category` (rounded half up) or lower is `target`.
float MeasureForCumulative(ResponseKernel& kernel, ScaleNumber scale, ModelType type, std::int32_t top, float category,
                           float target);

}  // namespace tessaly
