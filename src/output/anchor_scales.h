// The rating scale blocks of an anchor file.
#pragma once

#include "output/anchor_models.h"
#include "output/text_output.h"
#include "state/analysis.h"

namespace tessaly {

/// Writes a block for each scale of `names`, with its thresholds (in units of `Uscale=`) or its discrimination; then
/// the definitions of the specification that statements still name, and those that none ever did. With `flagAsAnchors`
/// values are anchors; otherwise only those that have been anchors in this analysis. A category that was kept though
/// nobody used it has no value: it is kept again, and its neighbours have the thresholds that the reports show.
void WriteAnchorScales(bool flagAsAnchors, const AnchorScaleNames& names, const Analysis& analysis, TextOutput& file);

}  // namespace tessaly
