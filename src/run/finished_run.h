// A finished analysis: what a run leaves for those who ask for more tables and files.
#pragma once

#include <string>
#include <vector>

#include "data/observation_store.h"
#include "estimate/data_fit.h"
#include "estimate/unexpected_list.h"
#include "model/response_kernel.h"

namespace tessaly {

/// Lives no longer than the analysis of the run: the kernel reads its scales.
struct FinishedRun {
  ObservationStore Store;
  ResponseKernel Kernel;
  /// Fit of the data without bias terms.
  DataFit Fit;
  UnexpectedList Unexpected;
  /// The extra specifications of the command line.
  std::vector<std::string> ExtraSpecs;
  /// The files that the run has read and written: nothing else may overwrite them.
  std::vector<std::string> Files;
  /// Files of settings and requests, which may not be overwritten either.
  std::vector<std::string> OtherInputs;
};

}  // namespace tessaly
