#include "shell/cli/terminal_keys.h"

#include <termios.h>
#include <unistd.h>

#include <string_view>

namespace tessaly {

namespace {

/// The terminal as it delivers keys at once; as it was before when this goes.
class KeyMode {
 public:
  KeyMode() : changed_(tcgetattr(STDIN_FILENO, &before_) == 0) {
    termios keys = before_;
    keys.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    keys.c_cc[VMIN] = 1;
    keys.c_cc[VTIME] = 0;
    if (changed_) tcsetattr(STDIN_FILENO, TCSANOW, &keys);
  }
  ~KeyMode() {
    if (changed_) tcsetattr(STDIN_FILENO, TCSANOW, &before_);
  }
  KeyMode(const KeyMode&) = delete;
  KeyMode& operator=(const KeyMode&) = delete;

  /// From here on a read ends when no byte follows for a tenth of a second.
  void AwaitRest() const {
    termios rest = {};
    if (tcgetattr(STDIN_FILENO, &rest) != 0) return;
    rest.c_cc[VMIN] = 0;
    rest.c_cc[VTIME] = 1;
    tcsetattr(STDIN_FILENO, TCSANOW, &rest);
  }

 private:
  termios before_ = {};
  bool changed_;
};

/// The name of the key that sends `sequence`, an escape character and what follows it. Terminals differ.
std::string KeyOf(std::string_view sequence) {
  if (sequence == "\033OS" || sequence == "\033[14~" || sequence == "\033[[D") return "F4";
  if (sequence == "\033[15~" || sequence == "\033[[E") return "F5";
  return {};
}

}  // namespace

std::optional<std::string> ReadKey() {
  constexpr std::size_t kLongestSequence = 8;
  const KeyMode mode;
  char c = 0;
  if (read(STDIN_FILENO, &c, 1) != 1 || c == '\004') return {};
  if (c == '\r' || c == '\n') return std::string();
  if (c != '\033') return std::string(1, c);
  mode.AwaitRest();
  std::string sequence(1, c);
  while (sequence.size() < kLongestSequence && read(STDIN_FILENO, &c, 1) == 1) sequence += c;
  return KeyOf(sequence);
}

}  // namespace tessaly
