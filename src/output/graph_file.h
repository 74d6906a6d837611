// The graph file: the category curves of every rating scale on a fine grid of measures, for programs that plot.
#pragma once

#include "model/response_kernel.h"
#include "output/text_output.h"
#include "state/analysis.h"

namespace tessaly {

/// Decimals of the graph file, in a run and asked for later.
constexpr int kGraphDecimals = 4;

/// One line for each reported scale and point of the grid: measure (logit), expected score in raw categories counted
/// from the lowest one, the raw category nearest to it, and the probability of each of the scale's categories. The grid
/// is the same for all scales, in equal steps of user units over all measures where an expected score is 0.1 or more
/// inside the ends of its scale. Heading line by the settings; its categories are those of the first scale, counted on
/// for scales that have more. The caller opens and closes `file`.
void WriteGraphFile(int decimals, const Analysis& analysis, ResponseKernel& kernel, TextOutput& file);

}  // namespace tessaly
