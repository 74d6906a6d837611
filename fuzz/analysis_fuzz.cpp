// Any bytes as a specification and its data files, to the last table: the analysis must end with a report or a message.
#include "fuzz/harness.h"
#include "run/run_analysis.h"
#include "support/failure.h"

using namespace tessaly;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::OwnFolder folder;
  folder.Unpack(data, size);
  fuzz::SilentHost host;
  Analysis analysis;
  CommandLine commandLine;
  commandLine.FileNames = {"spec.txt", "report.txt"};
  commandLine.ExtraSpecs = {"Iterations=5"};
  commandLine.Batch = true;
  try {
    RunAnalysis(analysis, commandLine, host.Host);
  } catch (const Stopped&) {
  }
  return 0;
}
