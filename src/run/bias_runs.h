// The bias runs of an analysis, with their tables.
#pragma once

#include "data/observation_store.h"
#include "estimate/data_fit.h"
#include "model/response_kernel.h"
#include "reports/report_writer.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// What the bias runs read of the finished analysis, and where they write.
struct BiasContext {
  const Analysis& A;
  ObservationStore& Store;
  ResponseKernel& Kernel;
  /// Fit of the data without bias terms.
  const DataFit& Fit;
  ReportWriter& Report;
  RunControl& Control;
  Console& Screen;
};

/// Makes the runs that the `B` marks of `Models=` ask for, each with the Tables 9 and 11 to 14 that `Tables=` wants.
/// Does nothing with `Bias=omit` or an empty `Arrange=`. Throws `Halt{WorkFileProblem}`.
void BiasRuns(const BiasContext& context);

}  // namespace tessaly
