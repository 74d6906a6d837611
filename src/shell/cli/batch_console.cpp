#include "shell/cli/batch_console.h"

#include <unistd.h>

#include <cerrno>
#include <string>

#include "shell/cli/terminal_user.h"
#include "support/output_file.h"

namespace tessaly {

namespace {

constexpr std::string_view kRedAndBold = "\033[1;31m";
constexpr std::string_view kPlain = "\033[0m";

/// Quoted input may hold anything; a terminal must not take it for commands.
std::string Printable(std::string_view text) {
  std::string printable(text);
  for (char& c : printable) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte < 32 && c != '\t' && c != '\n') || byte == 127) c = ' ';
  }
  return printable;
}

/// A pipe that nobody empties must not keep the program from being stopped.
bool StopWaits() {
  return TerminalUser::StopSignal() != 0;
}

}  // namespace

BatchConsole::BatchConsole() : terminalOut_(isatty(STDOUT_FILENO) != 0), terminalError_(isatty(STDERR_FILENO) != 0) {}

void BatchConsole::Write(std::string_view text) {
  const int error = WriteAll(STDOUT_FILENO, text, StopWaits);
  if (outputError_ == 0 && error != EPIPE && !terminalOut_) outputError_ = error;
}

void BatchConsole::EndProgressLine() {
  if (progressRunning_) Write("\n");
  progressRunning_ = false;
}

void BatchConsole::ShowMessage(std::string_view text) {
  EndProgressLine();
  Write(Printable(text) + "\n");
}

void BatchConsole::ShowWarning(std::string_view text) {
  EndProgressLine();
  const std::string line = Printable(text);
  WriteAll(STDERR_FILENO, terminalError_ ? std::string(kRedAndBold) + line + std::string(kPlain) + "\n" : line + "\n",
           StopWaits);
}

void BatchConsole::ShowProgress(std::string_view text, bool endLine) {
  if (!terminalOut_) return;
  Write(Printable(text));
  progressRunning_ = true;
  if (endLine) EndProgressLine();
}

void BatchConsole::ShowFatal(std::string_view text) {
  ShowWarning(text);
}

void BatchConsole::Beep() {
  if (terminalOut_) Write("\a");
}

}  // namespace tessaly
