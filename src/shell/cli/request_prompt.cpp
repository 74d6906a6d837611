#include "shell/cli/request_prompt.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "shell/cli/line_editor.h"
#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

namespace {

constexpr int kPatienceMilliseconds = 2000;
constexpr const char* kPrompt = "tessaly> ";
/// A longer line cannot be a request: something else is at standard input.
constexpr std::size_t kLongestRequest = std::size_t{1} << 20;

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

/// Lines of standard input, whether LF or CR LF ends them.
class PipedLines {
 public:
  explicit PipedLines(const TerminalUser& user) : user_(user) {}

  /// A line without its end, the first one also without byte-order mark, or more than `kLongestRequest` bytes of a
  /// longer line; nothing at the end of the input. Throws `Stopped` for a signal: half a line is no request.
  std::optional<std::string> Next() {
    std::size_t end = 0;
    for (std::size_t searched = 0; (end = taken_.find('\n', searched)) == std::string::npos;) {
      searched = taken_.size();
      if (searched <= kLongestRequest && Take()) continue;
      if (taken_.empty()) return {};
      end = searched;
      break;
    }
    std::string line = taken_.substr(0, end);
    taken_.erase(0, end + 1);
    if (line.ends_with('\r')) line.pop_back();
    if (std::exchange(first_, false) && line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
    return line;
  }

 private:
  bool Take() {
    char block[4096];
    for (;;) {
      if (!user_.AwaitInput()) throw Stopped{StopReason::User};
      const ssize_t count = read(STDIN_FILENO, block, sizeof block);
      if (count < 0 && errno == EINTR) continue;
      if (count > 0) taken_.append(block, static_cast<std::size_t>(count));
      return count > 0;
    }
  }

  const TerminalUser& user_;
  std::string taken_;
  bool first_ = true;
};

/// Whether something comes or ends in the pipe at standard input.
bool PipeLives() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return ::poll(&input, 1, kPatienceMilliseconds) > 0;
}

bool ServePipe(Session& session, const TerminalUser& user, Console& console) {
  const bool lives = PipeLives();
  if (user.StopSignal() != 0) throw Stopped{StopReason::User};
  bool allWell = true;
  if (!lives) return allWell;
  PipedLines lines(user);
  while (const auto line = lines.Next()) {
    if (EndsSession(*line)) return allWell;
    if (line->size() > kLongestRequest) {
      console.ShowWarning("Standard input has a line of more than 1 MB, which cannot be a request: no more are read");
      return false;
    }
    allWell &= session.Carry(*line);
  }
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
      [&] { return user.AwaitInput(); }, historyFile);
  console.ShowMessage("Tables and files of this analysis may be asked for here: \"help\" lists them, \"quit\" ends");
  bool allWell = true;
  for (;;) {
    const auto line = editor.ReadLine(kPrompt);
    if (TakeBackInterrupt(user)) {
      console.ShowMessage("");
      continue;
    }
    if (!line) console.ShowMessage("");
    if (!line || EndsSession(*line)) return allWell;
    allWell &= CarryInterruptibly(*line, session, user, console);
  }
}

}  // namespace

bool ServeRequests(Session& session, TerminalUser& user, Console& console, const std::string& historyFile) {
  if (user.Present()) return ServeTerminal(session, user, console, historyFile);
  return isatty(STDIN_FILENO) != 0 || ServePipe(session, user, console);
}

}  // namespace tessaly
