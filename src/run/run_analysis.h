// One analysis from the first line of the specification to the last table.
#pragma once

#include "spec/read_specification.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

enum class Outcome {
  Finished,
  /// A failure was reported.
  Halted,
};

/// Runs one analysis into `analysis`, which must be fresh. Failures are reported through the host's console. Throws
/// `Stopped` when the user leaves or an internal failure has been shown.
Outcome RunAnalysis(Analysis& analysis, CommandLine commandLine, Host& host);

}  // namespace tessaly
