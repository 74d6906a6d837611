// The bias runs of an analysis, with their tables.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/observation_store.h"
#include "estimate/data_fit.h"
#include "model/response_kernel.h"
#include "output/bias_plot_file.h"
#include "output/text_output.h"
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

/// One run, and what is to be written of it.
struct BiasRunRequest {
  /// Number of the run in the titles of its tables.
  std::int32_t Number = 1;
  /// Ascending, at least two.
  std::vector<FacetNumber> Facets;
  /// The orders of Tables 13 and 14, as `Arrange=` has them.
  std::string Arrange;
  bool BiasTable12On = true;
  bool BiasTable13On = true;
  bool BiasTable14On = true;
  BiasPlotSheets Plots;
  /// Takes the plots; null for none.
  TextOutput* PlotFile = nullptr;
  /// Of the analysis, for the heading of the plots.
  std::string RunDate;
};

/// Makes one run, with the tables of the request that `Tables=` wants: 9 and 11 besides. The terms are nobody's but the
/// run's: nothing of the analysis changes. Tells if the elements of the facets have too many combinations to be
/// numbered. Throws `Halt{WorkFileProblem}`.
void RunBias(const BiasContext& context, const BiasRunRequest& request);

/// Makes the runs that the `B` marks of `Models=` ask for, each with the Tables 9 and 11 to 14 that `Tables=` wants.
/// Does nothing with `Bias=omit` or an empty `Arrange=`. Throws `Halt{WorkFileProblem}`.
void BiasRuns(const BiasContext& context);

}  // namespace tessaly
