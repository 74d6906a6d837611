// The `Labels=` block of an anchor file.
#pragma once

#include "output/text_output.h"
#include "state/analysis.h"

namespace tessaly {

/// Writes facets and elements with their measures in user units, groups, weights and target elements, and with their
/// subsets as comments. With `flagAsAnchors` facets get the type A, but dummy facets and the flag N stay; otherwise
/// facets keep their flags, and elements that were free in an anchored or group-anchored facet have no value, which
/// would anchor them. Elements without a measure, or with one that `Hardware=` refuses, have none either.
void WriteAnchorLabels(bool flagAsAnchors, const Analysis& analysis, TextOutput& file);

}  // namespace tessaly
