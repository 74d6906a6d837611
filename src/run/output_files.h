// The output files of a run: their names, and the order in which they are written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/observation_store.h"
#include "model/response_kernel.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/failure.h"
#include "support/host.h"

namespace tessaly {

/// Writes what the file keywords ask for. A file that cannot be written is told and does not stop the run.
class OutputFiles {
 public:
  OutputFiles(Analysis& analysis, Console& console) : analysis_(analysis), console_(console) {}

  /// Refuses names of files that are read (`inputs`) or written otherwise, then tries each file: one that takes no
  /// writing loses its name. Throws `Halt{IncompatibleFile}`.
  void Prepare(const std::vector<std::string>& inputs);
  /// Throws `Halt{IncompatibleFile}` if a file is one of `inputs`, or two of them are one.
  void RefuseOverwriting(const std::vector<std::string>& inputs) const;

  /// The anchor file, with the extra specifications of the command line. Throws `Halt` if it cannot be written.
  void WriteAnchors(const std::vector<std::string>& extraSpecs, RunControl& control);
  /// Scores, graphs, residuals and simulated data, as far as they are asked for. `seed` starts the random numbers.
  void WriteResults(std::int32_t seed, ObservationStore& store, ResponseKernel& kernel, RunControl& control);

  /// The report and the files that have a name.
  std::vector<std::string> Names() const;
  /// Whether some file could not be written in full.
  bool AnyFailed() const { return anyFailed_; }

 private:
  void Try(std::string& name, std::string_view message, std::string_view what);
  /// Hands the file `name`, if there is a name, to `write`.
  template <class Write>
  void Attempt(const std::string& name, std::string_view what, RunControl& control, Write write);
  void TellFailure(std::string_view doing, std::string_view what, const std::string& name, const Halt& halt);

  Analysis& analysis_;
  Console& console_;
  bool anyFailed_ = false;
};

}  // namespace tessaly
