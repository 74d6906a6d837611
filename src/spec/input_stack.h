// Physical lines of a specification or data file and of the files that it includes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"
#include "support/line_file.h"

namespace tessaly {

/// The file at hand and, above it, its include files. A line that begins with "%" names a file to include; line numbers
/// go on counting through included files.
class InputStack {
 public:
  /// Deepest nesting of include files: a file that includes itself ends here.
  static constexpr std::int32_t kDeepestInclude = 100;
  /// Most include files, however often each: files that include each other several times soon are without end.
  static constexpr std::int32_t kMostIncludes = 10000;

  /// `at` receives number and text of each line. `folder` is where relative include names are looked for after the
  /// current folder (empty for none).
  InputStack(InputLine& at, Console& console, std::string folder)
      : at_(at), console_(console), folder_(std::move(folder)) {}
  /// Polls the user every so many lines, for there may be millions of labels, and when a signal comes while a file that
  /// is opened from now on keeps the program waiting.
  void PollWith(RunControl& control) { control_ = &control; }
  /// Notes in `sources` which lines come from which file, anew from `Open` on.
  void NoteSourcesIn(std::vector<SourceChange>& sources) { sources_ = &sources; }

  /// Opens the file at the bottom of the stack and sets the line number to 0. `kind` ("Specification", "Data") names it
  /// in messages. Throws `Halt` if it cannot be opened or is no text file.
  void Open(const std::string& path, std::string_view kind);

  /// Paths of the file and of all that it included so far, in order.
  const std::vector<std::string>& Opened() const { return opened_; }

  /// The next line as read, or nothing at the end. The view holds until the next call. Throws `Stopped`,
  /// `Halt{NoFileName}` for "%" without a name, and `Halt{IncompatibleFile}` for a nesting deeper than
  /// `kDeepestInclude` and for more than `kMostIncludes` files.
  std::optional<std::string_view> NextRawLine();

 private:
  struct OpenFile {
    LineFile Lines;
    std::string Path;
    std::int64_t LinesRead = 0;
  };

  std::optional<std::string_view> NextPhysicalLine();
  void CountLine();
  void Push(const std::string& path, std::string_view kind);
  void PushInclude(std::string_view line);
  [[noreturn]] void RefuseInclude(const std::string& name, const std::string& reason);

  InputLine& at_;
  Console& console_;
  std::string folder_;
  RunControl* control_ = nullptr;
  std::vector<SourceChange>* sources_ = nullptr;
  std::vector<OpenFile> files_;
  /// The next line is not from the file of the one before.
  bool fileChanged_ = false;
  std::vector<std::string> opened_;
  std::int32_t includes_ = 0;
};

}  // namespace tessaly
