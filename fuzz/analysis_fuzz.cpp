// Any bytes as a specification with its data: the analysis must end with a report or a message, never with a crash.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "run/run_analysis.h"
#include "support/failure.h"

namespace {

using namespace tessaly;

class NoClock : public Clock {
 public:
  std::string RunDate() override { return "2001-09-09 01:46:40"; }
  double Seconds() override { return 0; }
};

/// Leaves after a while: some inputs ask for more iterations than a fuzzer can wait for.
class ImpatientUser : public User {
 public:
  UserRequest Poll() override { return ++polls_ > 20000 ? UserRequest::Stop : UserRequest::None; }

 private:
  int polls_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string name = std::filesystem::temp_directory_path() / "tessaly-fuzz.txt";
  std::ofstream(name, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  ImpatientUser user;
  Console silence;
  NoClock clock;
  Host host{user, silence, clock};
  Analysis analysis;
  CommandLine commandLine;
  commandLine.FileNames = {name, "/dev/null"};
  commandLine.ExtraSpecs = {"Iterations=5"};
  commandLine.Batch = true;
  try {
    RunAnalysis(analysis, commandLine, host);
  } catch (const Stopped&) {
  }
  return 0;
}
