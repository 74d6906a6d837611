// A text file of lines for other programs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "state/run_control.h"
#include "support/host.h"
#include "support/output_file.h"

namespace tessaly {

/// Writes lines that end in CR LF, as those of the report do. `Close` tells whether all of them reached the disk.
class TextOutput {
 public:
  /// Creates or empties `path` as `opening` says; see `OutputFile`. With `control`, polls the user every so many lines
  /// and before it waits for a pipe.
  explicit TextOutput(std::string path, RunControl* control = nullptr,
                      OutputFile::Opening opening = OutputFile::Opening::Now)
      : file_(std::in_place, std::move(path), opening, PollsWhileWaiting(control)), control_(control) {}
  /// Sends the lines to `screen` instead.
  explicit TextOutput(Console& screen) : screen_(&screen) {}

  /// Appends `line`. A failure shows at `Close`. Throws `Stopped`.
  void WriteLine(std::string_view line) {
    if (screen_ != nullptr) {
      screen_->ShowMessage(line);
      return;
    }
    if (control_ != nullptr && ++lines_ % kLinesBetweenPolls == 0) control_->Poll();
    file_->Write(line);
    file_->Write("\r\n");
  }
  /// Throws `Halt` with the system's error if anything could not be written.
  void Close() {
    if (file_) file_->Close();
  }
  /// Empty for the screen.
  std::string Path() const { return file_ ? file_->Path() : std::string(); }

 private:
  static constexpr std::uint32_t kLinesBetweenPolls = 1000;

  std::optional<OutputFile> file_;
  RunControl* control_ = nullptr;
  std::uint32_t lines_ = 0;
  Console* screen_ = nullptr;
};

}  // namespace tessaly
