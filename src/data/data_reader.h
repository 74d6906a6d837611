// The data phase: lines of data files become stored observations, once in an analysis.
#pragma once

#include <string>

#include "data/observation_store.h"
#include "spec/input_stack.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Reads every file of `Data=`, or the lines behind the specification in `inlineInput`, makes cells and scales, and
/// writes each valid response to `writer`. Fills the counters, `Unspecified`, `EmptyFacet`, the category raw counts and
/// the responses matched to each statement; `CurrentDataFile` is the file at hand. `specFolder` is where relative file
/// names are looked for after the current folder. Stops reading when the user asks to finish (`control.FastForward`).
/// Gives the paths of the files of `Data=` that were read and of those that they include. Throws `Halt` with
/// `analysis.Input` at the line to blame, `Stopped` when the user leaves.
std::vector<std::string> ReadData(Analysis& analysis, InputStack* inlineInput, const std::string& specFolder,
                                  ObservationWriter& writer, RunControl& control, Host& host);

}  // namespace tessaly
