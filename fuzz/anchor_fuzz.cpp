// Any bytes as a specification: the anchor file of the analysis must be a specification that can be analysed in turn.
#include "fuzz/harness.h"
#include "run/run_analysis.h"
#include "support/failure.h"

using namespace tessaly;

namespace {

/// Whether the analysis came to its end, with all files written.
bool Analyse(const std::string& specification, const std::string& anchorFile) {
  fuzz::SilentHost host;
  Analysis analysis;
  CommandLine commandLine;
  commandLine.FileNames = {specification, "report of " + specification, anchorFile};
  commandLine.ExtraSpecs = {"Iterations=5"};
  commandLine.Batch = true;
  try {
    return RunAnalysis(analysis, commandLine, host.Host).Outcome == Outcome::Finished;
  } catch (const Stopped&) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::OwnFolder folder;
  folder.Unpack(data, size);
  if (Analyse("spec.txt", "anchor.txt")) Analyse("anchor.txt", "again.txt");
  return 0;
}
