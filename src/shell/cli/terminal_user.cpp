#include "shell/cli/terminal_user.h"

#include <unistd.h>

#include <cstdio>

#include "shell/cli/terminal_keys.h"

namespace tessaly {

namespace {

volatile std::sig_atomic_t stopSignal = 0;
volatile std::sig_atomic_t finishRequested = 0;

void RememberStop(int signal) {
  stopSignal = signal;
}
void RememberFinish(int) {
  finishRequested = 1;
}

void Handle(int signal, void (*handler)(int), int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

// A second signal ends the program at once, should it be waiting for input that never comes.
void HandleStops() {
  Handle(SIGINT, RememberStop, static_cast<int>(SA_RESETHAND));
  Handle(SIGTERM, RememberStop, static_cast<int>(SA_RESETHAND));
}

}  // namespace

TerminalUser::TerminalUser() : present_(isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0) {
  HandleStops();
  Handle(SIGUSR1, RememberFinish, SA_RESTART);
  // An analysis goes on when nobody reads its status lines any more.
  Handle(SIGPIPE, SIG_IGN, 0);
  // A file that may not grow further is a failure to be told, as a full disk is.
  Handle(SIGXFSZ, SIG_IGN, 0);
}

UserRequest TerminalUser::Poll() {
  if (stopSignal != 0) return UserRequest::Stop;
  if (finishRequested == 0) return UserRequest::None;
  finishRequested = 0;
  return UserRequest::Finish;
}

std::optional<std::string> TerminalUser::Ask(std::string_view question) {
  if (!present_) return {};
  std::fwrite(question.data(), 1, question.size(), stdout);
  std::fflush(stdout);
  std::string answer;
  for (;;) {
    const int c = std::getchar();
    if (c == '\n') return answer;
    if (c == EOF) {
      // The end of input (Ctrl+D) answers this question only.
      std::clearerr(stdin);
      return {};
    }
    answer += static_cast<char>(c);
  }
}

std::optional<std::string> TerminalUser::AskKey(std::string_view question) {
  if (!present_) return {};
  std::fwrite(question.data(), 1, question.size(), stdout);
  std::fflush(stdout);
  const std::optional<std::string> key = ReadKey();
  std::fwrite("\n", 1, 1, stdout);
  return key;
}

void TerminalUser::ForgetStop() {
  stopSignal = 0;
  HandleStops();
}

int TerminalUser::StopSignal() const {
  return stopSignal;
}

}  // namespace tessaly
