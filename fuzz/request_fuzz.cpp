// Any bytes as requests, one a line, that are made of a finished analysis.
#include <optional>

#include "fuzz/harness.h"
#include "requests/session.h"
#include "run/run_analysis.h"
#include "support/bytes.h"
#include "support/failure.h"

using namespace tessaly;

namespace {

constexpr std::string_view kSpecification =
    "Title=Fuzz\nFacets=3\nModels=?B,?B,#,R3\nCenter=2,3\nGlabel=1,1,old\nGlabel=1,2,new\nBarcharts=Y\n"
    "Inter-rater=2\nLabels=\n1,Person\n1,Ann,,1\n2,Bob,,1\n3,C\xC3\xA9line,,2\n4,Dot,,2\n5,Eve,,2\n*\n2,Rater\n1,R1\n2,"
    "R2\n3,R3\n*\n3,Item\n1,first\n2,second\n*\nData=\n"
    "1,1,1-2,1,2\n1,2,1-2,0,1\n1,3,1-2,2,2\n2,1,1-2,2,3\n2,2,1-2,1,1\n2,3,1-2,3,2\n3,1,1-2,0,1\n3,2,1-2,0,0\n"
    "3,3,1-2,1,2\n4,1,1-2,3,3\n4,2,1-2,2,3\n4,3,1-2,3,3\n5,1,1-2,1,0\n5,2,1-2,0,2\n5,3,1-2,2,0\n";

/// The analysis that all requests are made of, and what "modify" must not leave behind for the next input.
class Subject {
 public:
  Subject() {
    const fuzz::OwnFolder folder;
    folder.Write("spec.txt", kSpecification);
    fuzz::SilentHost host;
    CommandLine commandLine;
    commandLine.FileNames = {"spec.txt", "report.txt"};
    commandLine.Batch = true;
    RunResult result = RunAnalysis(analysis_, commandLine, host.Host);
    fuzz::Require(result.Finished.has_value());
    finished_.emplace(std::move(*result.Finished));
    pristine_ = analysis_;
  }

  void Serve(std::string_view requests) {
    analysis_ = pristine_;
    fuzz::SilentHost host;
    SettingsEnvironment environment;
    environment.SettingsFile = "settings.ini";
    Session session(analysis_, *finished_, host.Host, environment);
    for (const std::string_view request : SplitAt(requests, '\n')) {
      RequestProblem(request);
      session.Completions(request);
      Session::ExpectsFile(request);
      session.Carry(request);
    }
  }

 private:
  Analysis analysis_;
  Analysis pristine_;
  std::optional<FinishedRun> finished_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Subject subject;
  const fuzz::OwnFolder folder;
  folder.Write("spec.txt", kSpecification);
  try {
    subject.Serve(fuzz::ConfinedText(data, size));
  } catch (const Stopped&) {
  }
  return 0;
}
