// tessaly SPEC [REPORT [ANCHOR [RESIDUAL [GRAPH]]]] [keyword=value ...] [--request TEXT ...]
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <initializer_list>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "requests/session.h"
#include "run/run_analysis.h"
#include "shell/cli/batch_console.h"
#include "shell/cli/command_words.h"
#include "shell/cli/request_prompt.h"
#include "shell/cli/system_clock.h"
#include "shell/cli/terminal_user.h"
#include "support/failure.h"
#include "support/output_file.h"

namespace {

using tessaly::BatchConsole;

enum ExitStatus { kFinished = 0, kHalted = 1, kInternalFailure = 2, kSignalled = 128 };

constexpr std::string_view kUsage =
    R"(Usage: tessaly SPEC [REPORT [ANCHOR [RESIDUAL [GRAPH]]]] [keyword=value ...] [--request TEXT ...]

Many-facet Rasch measurement: reads the specification file SPEC and its data, estimates a measure for
every element of every facet, and writes the report.

  SPEC           specification file
  REPORT         report file (default: the name of SPEC with ".out.txt")
  keyword=value  extra specifications; they rule over those in SPEC
  Batch=Y        never ask a question, offer no prompt, leave standard input alone
  --request TEXT asks for a table or file after the analysis, as often as you like, in this order:
                 --request "table7 facets=2 order=measure direction=descend file=raters.txt";
                 --request help lists the requests, --request "table7 help" the options of one
  --requests FILE takes requests from the lines of a file
  --help         this text
  --version      the version

When the analysis is done, a terminal offers a prompt for more requests; from a pipe or file at standard
input they are read line by line.

Status lines go to standard output, warnings and failures to standard error.
Exit status: 0 finished; 1 halted on a reported failure, an output file could not be written, or a request was
refused or failed; 2 internal failure; 129, 130, 143 stopped by a signal. SIGUSR1 finishes the present
iterations. TMPDIR names the folder for temporary files, TESSALY_SETTINGS a settings file in place of the user's.
)";

/// Files must not take the places of streams that nobody gave: status lines would end up in them.
void FillStandardStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", O_RDWR);
}

/// Needs no memory.
void PrintError(std::initializer_list<std::string_view> pieces) {
  for (const std::string_view piece : pieces) tessaly::WriteAll(STDERR_FILENO, piece);
}

int Print(std::string_view text) {
  const int error = tessaly::WriteAll(STDOUT_FILENO, text);
  if (error == 0) return kFinished;
  PrintError({"tessaly: standard output: ", std::strerror(error), "\n"});
  return kHalted;
}

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

tessaly::SettingsEnvironment Environment() {
  return {Variable("HOME"), Variable("XDG_CONFIG_HOME"), Variable("XDG_CONFIG_DIRS"), Variable("TESSALY_SETTINGS"),
          Variable("TMPDIR")};
}

/// Requests whose words are wrong would only be refused when the analysis is done.
void WarnOfRequests(const std::vector<std::string>& requests, BatchConsole& console) {
  for (const std::string& request : requests) {
    const std::string problem = tessaly::RequestProblem(request);
    if (!problem.empty()) console.ShowWarning("A request will be refused: " + problem);
  }
}

std::string HistoryFile() {
  const std::string recent = tessaly::LocateSettings(Environment()).RecentFiles;
  return recent.empty() ? recent : std::filesystem::path(recent).replace_filename("requests.history").string();
}

/// Whether all went well.
bool CarryRequests(const std::vector<std::string>& requests, bool batch, tessaly::Session& session,
                   BatchConsole& console, tessaly::TerminalUser& user) {
  bool allWell = true;
  for (const std::string& request : requests) {
    if (tessaly::EndsSession(request)) return allWell;
    allWell &= session.Carry(request);
  }
  if (!batch) allWell &= tessaly::ServeRequests(session, user, console, HistoryFile());
  return allWell;
}

int Analyse(const tessaly::CommandWords& words, BatchConsole& console, tessaly::TerminalUser& user) {
  tessaly::SystemClock clock;
  tessaly::Host host{user, console, clock};
  tessaly::CommandLine commandLine;
  try {
    commandLine = tessaly::ReadCommandLine(words.Analysis);
  } catch (const tessaly::Halt& halt) {
    std::string line;
    for (const std::string& word : words.Analysis) line += (line.empty() ? "" : " ") + word;
    console.ShowWarning("Command line is: " + line);
    console.ShowWarning(tessaly::FailureLine(halt, {}, 0));
    return kHalted;
  }
  commandLine.OtherInputs = words.RequestFiles;
  WarnOfRequests(words.Requests, console);
  tessaly::Analysis analysis;
  tessaly::RunResult result = tessaly::RunAnalysis(analysis, commandLine, host, Environment());
  bool allWell = result.Outcome == tessaly::Outcome::Finished;
  if (result.Finished) {
    tessaly::Session session(analysis, *result.Finished, host, Environment());
    const bool batch = commandLine.Batch || analysis.Settings.BatchOption;
    allWell &= CarryRequests(words.Requests, batch, session, console, user);
  } else if (!words.Requests.empty()) {
    console.ShowWarning("The analysis has not been finished: the requests were not carried out");
  }
  return allWell ? kFinished : kHalted;
}

/// Help needs no analysis.
bool OnlyHelp(const tessaly::CommandWords& words) {
  const auto asksForHelp = [](const std::string& request) {
    return request == "help" || request.starts_with("help ") || request.ends_with(" help");
  };
  return words.Analysis.empty() && !words.Requests.empty() &&
         std::all_of(words.Requests.begin(), words.Requests.end(), asksForHelp);
}

int ShowHelp(const std::vector<std::string>& requests, BatchConsole& console) {
  bool allWell = true;
  for (const std::string& request : requests) allWell &= tessaly::AnswerHelp(request, console);
  return allWell ? kFinished : kHalted;
}

int Run(const std::vector<std::string>& words, BatchConsole& console, tessaly::TerminalUser& user) {
  if (!words.empty() && words.front() == "--help") return Print(kUsage);
  if (!words.empty() && words.front() == "--version") return Print("Tessaly " TESSALY_VERSION "\n");
  const tessaly::CommandWords sorted = tessaly::SortCommandWords(words);
  if (!sorted.Problem.empty()) {
    PrintError({"tessaly: ", sorted.Problem, "\n"});
    return kHalted;
  }
  if (!sorted.Analysis.empty() && sorted.Analysis.front().starts_with("--")) {
    PrintError({"tessaly: unknown option ", sorted.Analysis.front(), "\n", kUsage});
    return kHalted;
  }
  if (sorted.Analysis.empty() && !user.Present() && !OnlyHelp(sorted)) {
    PrintError({kUsage});
    return kHalted;
  }
  const int status = OnlyHelp(sorted) ? ShowHelp(sorted.Requests, console) : Analyse(sorted, console, user);
  if (console.OutputError() == 0) return status;
  // The signal came behind the last poll, but what was asked for was cut.
  if (user.StopSignal() != 0) throw tessaly::Stopped{tessaly::StopReason::User};
  PrintError({"Standard output could not be written: ", std::strerror(console.OutputError()), "\n"});
  return kHalted;
}

}  // namespace

int main(int argc, char** argv) {
  FillStandardStreams();
  tessaly::TerminalUser user;
  BatchConsole console;
  try {
    return Run({argv + (argc > 0 ? 1 : 0), argv + argc}, console, user);
  } catch (const tessaly::Stopped& stopped) {
    return stopped.Reason == tessaly::StopReason::User ? kSignalled + user.StopSignal() : kInternalFailure;
  } catch (const std::bad_alloc&) {
    PrintError({"There is not enough memory: halted, and what was being written is not complete\n"});
    return kHalted;
  } catch (const std::exception& error) {
    PrintError({"Tessaly Problem ...\nUnexpected error: ", error.what(), " failed at version " TESSALY_VERSION "\n"});
    return kInternalFailure;
  }
}
