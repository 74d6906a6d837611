// A line of input with editing, history and completion.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// Lines from the person at the terminal. One at a time: the library below it has global state.
class LineEditor {
 public:
  /// The words that may stand in place of the last word of a line.
  using Complete = std::function<std::vector<std::string>(std::string_view line)>;

  /// Gives a line up when `awaitInput`, which waits for something to read, says no. Remembers lines between sessions in
  /// `historyFile`, unless that is empty or cannot be written.
  LineEditor(Complete complete, std::function<bool()> awaitInput, std::string historyFile);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  /// Nothing at the end of the input and for an interruption.
  std::optional<std::string> ReadLine(const std::string& prompt);

 private:
  std::string historyFile_;
};

}  // namespace tessaly
