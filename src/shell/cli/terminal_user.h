// The person at the terminal, and signals.
#pragma once

#include <csignal>
#include <optional>
#include <string>
#include <string_view>

#include "support/host.h"

namespace tessaly {

/// Turns signals into requests: SIGINT, SIGTERM and SIGHUP (unless it was ignored: nohup) stop the analysis in good
/// order, SIGUSR1 finishes the present iterations. Questions are asked only when standard input and output are a
/// terminal.
class TerminalUser : public User {
 public:
  TerminalUser();

  UserRequest Poll() override;
  std::optional<std::string> Ask(std::string_view question) override;
  std::optional<std::string> AskKey(std::string_view question) override;
  bool Present() const override { return present_; }

  /// Waits until standard input has something to read or has ended. False for a signal that stops, even one that came
  /// just before the call: `read` would wait on.
  bool AwaitInput() const;
  /// The signal that stopped the analysis, 0 for none.
  static int StopSignal();
  /// Takes the signal back: it was meant for a request, not for the program.
  void ForgetStop();

 private:
  bool present_;
};

}  // namespace tessaly
