// A finished analysis, and the requests that may be made of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "requests/session_state.h"
#include "run/finished_run.h"
#include "spec/settings_location.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Carries out requests. Apart from "modify", none changes anything for those that follow. Temporary files of requests
/// are gone with the session.
class Session {
 public:
  /// All that is handed over must outlive the session.
  Session(Analysis& analysis, FinishedRun& run, Host& host, SettingsEnvironment environment);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  /// Carries out one request. False if it was refused or failed, which a warning tells; the next one may follow.
  /// An empty line and a comment (";" or "#" first) ask for nothing. Throws `Stopped` when the user leaves.
  bool Carry(std::string_view line);

  /// What may stand at the end of `line`, as whole words: verbs, options with "=", words, facets, scales. Nothing where
  /// a file name is expected (`ExpectsFile`).
  std::vector<std::string> Completions(std::string_view line) const;
  /// Whether the end of `line` is the value of an option that names a file.
  static bool ExpectsFile(std::string_view line);

 private:
  void CarryOut(std::string_view line);
  void Show(std::string_view what);

  SessionState state_;
};

/// Whether `line` asks to leave the session, which those who read its lines must heed: "quit" or "exit".
bool EndsSession(std::string_view line);

/// Answers a request for help, which needs no analysis. False if it is none, or names an unknown request: told.
bool AnswerHelp(std::string_view line, Console& console);

/// What is wrong with the words of a request whatever the analysis: an unknown verb, an unknown option; empty if
/// nothing is.
std::string RequestProblem(std::string_view line);

}  // namespace tessaly
