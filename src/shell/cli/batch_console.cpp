#include "shell/cli/batch_console.h"

#include <unistd.h>

#include <cstdio>
#include <string>

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

void Write(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

}  // namespace

BatchConsole::BatchConsole() : terminalOut_(isatty(STDOUT_FILENO) != 0), terminalError_(isatty(STDERR_FILENO) != 0) {}

void BatchConsole::EndProgressLine() {
  if (progressRunning_) Write(stdout, "\n");
  progressRunning_ = false;
}

void BatchConsole::ShowMessage(std::string_view text) {
  EndProgressLine();
  Write(stdout, Printable(text) + "\n");
}

void BatchConsole::ShowWarning(std::string_view text) {
  EndProgressLine();
  const std::string line = Printable(text);
  Write(stderr, terminalError_ ? std::string(kRedAndBold) + line + std::string(kPlain) + "\n" : line + "\n");
}

void BatchConsole::ShowProgress(std::string_view text, bool endLine) {
  if (!terminalOut_) return;
  Write(stdout, Printable(text));
  progressRunning_ = true;
  if (endLine) EndProgressLine();
}

void BatchConsole::ShowFatal(std::string_view text) {
  ShowWarning(text);
}

void BatchConsole::Beep() {
  if (terminalOut_) Write(stdout, "\a");
}

}  // namespace tessaly
