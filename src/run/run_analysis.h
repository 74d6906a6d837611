// One analysis from the first line of the specification to the last table.
#pragma once

#include <optional>

#include "run/finished_run.h"
#include "spec/read_specification.h"
#include "spec/settings_location.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

enum class Outcome {
  Finished,
  /// To the end, but an output file could not be written: it was told.
  Incomplete,
  /// A failure was reported.
  Halted,
};

struct RunResult {
  tessaly::Outcome Outcome = tessaly::Outcome::Halted;
  /// Nothing if the run halted before its output files were written.
  std::optional<FinishedRun> Finished;
};

/// Runs one analysis into `analysis`, which must be fresh. The settings files that `environment` leads to give the
/// defaults; without it there are none. Failures are reported through the host's console. Throws
/// `Stopped` when the user leaves or an internal failure has been shown.
RunResult RunAnalysis(Analysis& analysis, CommandLine commandLine, Host& host, SettingsEnvironment environment = {});

}  // namespace tessaly
