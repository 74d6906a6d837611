// tessaly SPEC [REPORT [ANCHOR [RESIDUAL [GRAPH]]]] [keyword=value ...]
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "run/run_analysis.h"
#include "shell/cli/batch_console.h"
#include "shell/cli/system_clock.h"
#include "shell/cli/terminal_user.h"
#include "support/failure.h"

namespace {

using tessaly::BatchConsole;

enum ExitStatus { kFinished = 0, kHalted = 1, kInternalFailure = 2, kSignalled = 128 };

constexpr std::string_view kUsage =
    R"(Usage: tessaly SPEC [REPORT [ANCHOR [RESIDUAL [GRAPH]]]] [keyword=value ...]

Many-facet Rasch measurement: reads the specification file SPEC and its data, estimates a measure for
every element of every facet, and writes the report.

  SPEC           specification file
  REPORT         report file (default: the name of SPEC with ".out.txt")
  keyword=value  extra specifications; they rule over those in SPEC
  Batch=Y        never ask a question
  --help         this text
  --version      the version

Status lines go to standard output, warnings and failures to standard error.
Exit status: 0 finished; 1 halted on a reported failure, or an output file could not be written; 2 internal
failure; 130, 143 stopped by a signal. SIGUSR1 finishes the present iterations. TMPDIR names the folder for
temporary files, TESSALY_SETTINGS a settings file in place of the user's.
)";

void Print(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
}

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

tessaly::SettingsEnvironment Environment() {
  return {Variable("HOME"), Variable("XDG_CONFIG_HOME"), Variable("XDG_CONFIG_DIRS"), Variable("TESSALY_SETTINGS"),
          Variable("TMPDIR")};
}

int Analyse(const std::vector<std::string>& words, BatchConsole& console, tessaly::TerminalUser& user) {
  tessaly::SystemClock clock;
  tessaly::Host host{user, console, clock};
  tessaly::CommandLine commandLine;
  try {
    commandLine = tessaly::ReadCommandLine(words);
  } catch (const tessaly::Halt& halt) {
    std::string line;
    for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
    console.ShowWarning("Command line is: " + line);
    console.ShowWarning(tessaly::FailureLine(halt, {}, 0));
    return kHalted;
  }
  tessaly::Analysis analysis;
  const tessaly::Outcome outcome = tessaly::RunAnalysis(analysis, commandLine, host, Environment());
  return outcome == tessaly::Outcome::Finished ? kFinished : kHalted;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + (argc > 0 ? 1 : 0), argv + argc);
  if (!words.empty() && words.front() == "--help") {
    Print(stdout, kUsage);
    return kFinished;
  }
  if (!words.empty() && words.front() == "--version") {
    Print(stdout, "Tessaly " TESSALY_VERSION "\n");
    return kFinished;
  }
  if (!words.empty() && words.front().starts_with("--")) {
    Print(stderr, "tessaly: unknown option " + words.front() + "\n" + std::string(kUsage));
    return kHalted;
  }
  tessaly::TerminalUser user;
  BatchConsole console;
  if (words.empty() && !user.Present()) {
    Print(stderr, kUsage);
    return kHalted;
  }
  try {
    return Analyse(words, console, user);
  } catch (const tessaly::Stopped& stopped) {
    return stopped.Reason == tessaly::StopReason::User ? kSignalled + user.StopSignal() : kInternalFailure;
  } catch (const std::exception& error) {
    console.ShowFatal(std::string("Tessaly Problem ...\nUnexpected error: ") + error.what() +
                      " failed at version " TESSALY_VERSION);
    return kInternalFailure;
  }
}
