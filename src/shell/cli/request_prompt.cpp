#include "shell/cli/request_prompt.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "shell/cli/line_editor.h"
#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

namespace {

constexpr int kPatienceMilliseconds = 2000;
constexpr const char* kPrompt = "tessaly> ";

bool IsQuit(std::string_view line) {
  const std::string word = LowerAscii(TrimBlanks(line));
  return word == "quit" || word == "exit";
}

/// "file=out/ta" with the names that go on so.
std::vector<std::string> FileCompletions(std::string_view line) {
  const std::string word(line.substr(line.find_last_of(" \t") + 1));
  const std::size_t valueStart = word.find('=') + 1;
  const std::string value = word.substr(valueStart);
  const std::string folder = value.substr(0, value.rfind('/') + 1);
  std::vector<std::string> words;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code unknown;
    const std::string name = folder + entry->path().filename().string() + (entry->is_directory(unknown) ? "/" : "");
    if (name.starts_with(value)) words.push_back(word.substr(0, valueStart) + name);
  }
  return words;
}

/// A line of standard input without its end; nothing at the end of the input and for a signal.
std::optional<std::string> ReadPipedLine() {
  std::string line;
  for (;;) {
    const int c = std::getchar();
    if (c == '\n' || (c == EOF && !line.empty())) return line;
    if (c == EOF) return {};
    line += static_cast<char>(c);
  }
}

/// Whether something comes or ends in the pipe at standard input.
bool PipeLives() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return ::poll(&input, 1, kPatienceMilliseconds) > 0;
}

bool ServePipe(Session& session, TerminalUser& user) {
  bool allWell = true;
  if (!PipeLives()) return allWell;
  while (const auto line = ReadPipedLine()) {
    if (IsQuit(*line)) return allWell;
    allWell &= session.Carry(*line);
  }
  if (user.Poll() == UserRequest::Stop) throw Stopped{StopReason::User};
  return allWell;
}

/// Takes back a Ctrl+C that was meant for the line or the request at hand. Throws `Stopped` for other signals.
bool TakeBackInterrupt(TerminalUser& user) {
  if (user.StopSignal() == 0) return false;
  if (user.StopSignal() != SIGINT) throw Stopped{StopReason::User};
  user.ForgetStop();
  return true;
}

bool CarryInterruptibly(const std::string& line, Session& session, TerminalUser& user, Console& console) {
  try {
    return session.Carry(line);
  } catch (const Stopped& stopped) {
    if (stopped.Reason != StopReason::User) throw;
    if (!TakeBackInterrupt(user)) throw;
    console.ShowWarning("Request cancelled: what it has written is not complete");
    return false;
  }
}

bool ServeTerminal(Session& session, TerminalUser& user, Console& console, const std::string& historyFile) {
  LineEditor editor(
      [&](std::string_view line) {
        return Session::ExpectsFile(line) ? FileCompletions(line) : session.Completions(line);
      },
      [&] { return user.StopSignal() != 0; }, historyFile);
  console.ShowMessage("Tables and files of this analysis may be asked for here: \"help\" lists them, \"quit\" ends");
  bool allWell = true;
  for (;;) {
    const auto line = editor.ReadLine(kPrompt);
    if (TakeBackInterrupt(user)) {
      console.ShowMessage("");
      continue;
    }
    if (!line) console.ShowMessage("");
    if (!line || IsQuit(*line)) return allWell;
    allWell &= CarryInterruptibly(*line, session, user, console);
  }
}

}  // namespace

bool ServeRequests(Session& session, TerminalUser& user, Console& console, const std::string& historyFile) {
  if (user.Present()) return ServeTerminal(session, user, console, historyFile);
  return isatty(STDIN_FILENO) != 0 || ServePipe(session, user);
}

}  // namespace tessaly
