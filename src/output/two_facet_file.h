// The control file with which the two-facet Rasch program Zandrel analyses the same responses.
#pragma once

#include <vector>

#include "output/response_matrix.h"
#include "output/text_output.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// What a Zandrel control file is to hold. No facet is on both sides.
struct ZandrelRequest {
  std::vector<FacetNumber> RowFacets;
  std::vector<FacetNumber> ColumnFacets;
  RepeatRule Repeats = RepeatRule::Unstated;
  /// Which estimates are written as anchor values.
  bool AnchorScale = false;
  bool AnchorColumns = false;
  bool AnchorRows = false;
  /// Whether the responses follow.
  bool Data = true;
};

/// Writes control variables, labels, and the responses as a matrix of rows ("person") and columns ("item"). Rows and
/// columns without responses are left out. Anchor values are in user units, for rows counted upward with the response,
/// for columns downward: `Umean=` plus `Uscale=` times the sum of the facets' signed measures. A scale has category
/// labels and anchor values only as long as cells hold single responses. The caller opens and closes `output`.
/// Throws `Halt{IncompatibleFile}`, before anything is written, if there are too many cells, or sums are too large.
void WriteZandrelFile(const ZandrelRequest& request, const Analysis& analysis, ObservationStore& store,
                      RunControl& control, Console& console, TextOutput& output);

}  // namespace tessaly
