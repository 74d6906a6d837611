#include "shell/cli/line_editor.h"

#include <editline/readline.h>

#include <langinfo.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <utility>

namespace tessaly {

namespace {

constexpr int kRememberedLines = 500;
constexpr const char* kBlanks = " \t";

LineEditor::Complete completeLine;
std::function<bool()> inputComes;
std::vector<std::string> completions;
bool lineBegins = false;

/// The library asks for one word after the other, and frees them.
char* NextWord(const char*, int state) {
  const auto at = static_cast<std::size_t>(state);
  return at < completions.size() ? strdup(completions[at].c_str()) : nullptr;
}

char** CompleteWord(const char* text, int start, int) {
  // Without completions of ours there are none: the library would offer file names.
  rl_attempted_completion_over = 1;
  completions = completeLine(std::string(rl_line_buffer, static_cast<std::size_t>(start)) + text);
  const bool open = completions.size() != 1 || completions.front().ends_with('=') || completions.front().ends_with('/');
  rl_completion_append_character = open ? '\0' : ' ';
  return completions.empty() ? nullptr : rl_completion_matches(text, NextWord);
}

bool InputWaits() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return poll(&input, 1, 0) > 0;
}

/// The next byte of standard input; -1 at its end and when the line is given up. The library's own reading would go on
/// after a signal.
int ReadByte() {
  unsigned char byte = 0;
  // A Ctrl+D from the time of the last request, when lines were not edited, is a zero in front of this one.
  const bool typedAhead = std::exchange(lineBegins, false) && InputWaits();
  while (inputComes()) {
    const ssize_t count = read(STDIN_FILENO, &byte, 1);
    if (count == 1) return byte == 0 && typedAhead ? -1 : byte;
    if (count == 0 || errno != EINTR) return -1;
  }
  return -1;
}

/// The next character, of one or more bytes by the locale; -1 as for bytes. Bytes that are no character are dropped.
int ReadCharacter(std::FILE*) {
  std::mbstate_t state = {};
  for (;;) {
    const int byte = ReadByte();
    if (byte < 0) return -1;
    const char c = static_cast<char>(byte);
    wchar_t character = 0;
    const std::size_t taken = std::mbrtowc(&character, &c, 1, &state);
    if (taken <= 1) return static_cast<int>(character);
    if (taken == static_cast<std::size_t>(-1)) state = {};
  }
}

}  // namespace

LineEditor::LineEditor(Complete complete, std::function<bool()> awaitInput, std::string historyFile)
    : historyFile_(std::move(historyFile)) {
  completeLine = std::move(complete);
  inputComes = std::move(awaitInput);
  // Which bytes are a character on this terminal; numbers keep their points. Terminals send UTF-8 even where the
  // environment names no language.
  std::setlocale(LC_CTYPE, "");
  if (std::string_view(nl_langinfo(CODESET)) == "ANSI_X3.4-1968") std::setlocale(LC_CTYPE, "C.UTF-8");
  rl_getc_function = ReadCharacter;
  rl_readline_name = "tessaly";
  // The library would send a signal on to the whole process group, and end the script that started the program.
  rl_catch_signals = 0;
  rl_initialize();
  rl_attempted_completion_function = CompleteWord;
  // An option with its value is one word.
  rl_basic_word_break_characters = kBlanks;
  using_history();
  stifle_history(kRememberedLines);
  if (!historyFile_.empty()) read_history(historyFile_.c_str());
}

LineEditor::~LineEditor() {
  if (!historyFile_.empty()) write_history(historyFile_.c_str());
  completeLine = nullptr;
}

std::optional<std::string> LineEditor::ReadLine(const std::string& prompt) {
  // Without the library's signals nobody tells it of another width.
  rl_resize_terminal();
  lineBegins = true;
  char* const typed = readline(prompt.c_str());
  if (typed == nullptr) return {};
  std::string line(typed);
  std::free(typed);
  if (!line.empty()) add_history(line.c_str());
  return line;
}

}  // namespace tessaly
