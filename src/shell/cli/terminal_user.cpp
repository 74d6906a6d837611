#include "shell/cli/terminal_user.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
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

constexpr int kStops[] = {SIGINT, SIGTERM, SIGHUP};

bool IsIgnored(int signal) {
  struct sigaction action = {};
  sigaction(signal, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

// A second signal ends the program at once, should it be waiting for input that never comes.
void HandleStops() {
  for (const int signal : kStops)
    if (signal != SIGHUP || !IsIgnored(signal)) Handle(signal, RememberStop, static_cast<int>(SA_RESETHAND));
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

bool TerminalUser::AwaitInput() const {
  sigset_t stops;
  sigset_t before;
  sigemptyset(&stops);
  for (const int signal : kStops) sigaddset(&stops, signal);
  sigprocmask(SIG_BLOCK, &stops, &before);
  pollfd input{STDIN_FILENO, POLLIN, 0};
  // Signals come in during the call only, so that none falls between the question and the wait.
  while (stopSignal == 0 && ppoll(&input, 1, nullptr, &before) < 0 && errno == EINTR) {
  }
  sigprocmask(SIG_SETMASK, &before, nullptr);
  return stopSignal == 0;
}

void TerminalUser::ForgetStop() {
  stopSignal = 0;
  HandleStops();
}

int TerminalUser::StopSignal() {
  return stopSignal;
}

}  // namespace tessaly
