// How reports name the model of a scale.
#pragma once

#include <string>

#include "state/analysis.h"

namespace tessaly {

/// The model statement of `scale` as it was matched: its positions and its scale with commas between them, each `#`
/// replaced by the number of the scale's element. Behind "  ; " the labels of elements that have one besides their
/// number, from the last position to the first.
std::string ModelText(ScaleNumber scale, const Analysis& analysis);

}  // namespace tessaly
