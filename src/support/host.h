// The doors between an analysis and whoever runs it: who may interrupt it, where it speaks, what time it is.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessaly {

/// What the person who watches a running analysis asks for.
enum class UserRequest { None, Finish, Faster, Slower, Stop };

/// Who may interrupt a running analysis. The default is nobody (batch).
class User {
 public:
  virtual ~User() = default;
  virtual UserRequest Poll() { return UserRequest::None; }
  /// The answer to a question, or nothing when there is nobody to ask.
  virtual std::optional<std::string> Ask(std::string_view /*question*/) { return {}; }
  /// The same for a question that one key answers: "F4", "F5", the character of another key, or empty for Enter.
  virtual std::optional<std::string> AskKey(std::string_view question) { return Ask(question); }
  /// Whether somebody is there to be asked.
  virtual bool Present() const { return false; }
};

/// Where the analysis speaks. The default is silence. Texts carry no line end.
class Console {
 public:
  virtual ~Console() = default;
  /// A status line: to the screen only.
  virtual void ShowMessage(std::string_view /*text*/) {}
  /// A warning line: to the screen, and to the report (or kept for it as long as it is not open).
  virtual void ShowWarning(std::string_view /*text*/) {}
  /// A report line: to the report only.
  virtual void ReportLine(std::string_view /*text*/) {}
  /// Marks on the running progress line of a long pass; `endLine` ends that line.
  virtual void ShowProgress(std::string_view /*text*/, bool /*endLine*/) {}
  /// A failure dialog: `text` must reach the user whatever else is switched off.
  virtual void ShowFatal(std::string_view /*text*/) {}
  virtual void Beep() {}
};

/// Time as the analysis sees it.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Date and time of the run as the reports print them, "YYYY-MM-DD hh:mm:ss".
  virtual std::string RunDate() = 0;
  /// Seconds from an arbitrary start; never goes back.
  virtual double Seconds() = 0;
};

/// What a shell lends to an analysis.
struct Host {
  User& user;
  Console& console;
  Clock& clock;
};

}  // namespace tessaly
