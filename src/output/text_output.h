// A text file of lines for other programs.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "support/host.h"
#include "support/output_file.h"

namespace tessaly {

/// Writes lines that end in CR LF, as those of the report do. `Close` tells whether all of them reached the disk.
class TextOutput {
 public:
  /// Creates or empties `path`. Throws `Halt` with the system's error.
  explicit TextOutput(std::string path) : file_(std::in_place, std::move(path)) {}
  /// Sends the lines to `screen` instead.
  explicit TextOutput(Console& screen) : screen_(&screen) {}
  /// What was written remains, though nobody can tell whether it reached the disk.
  ~TextOutput() { WriteBlock(); }
  TextOutput(const TextOutput&) = delete;
  TextOutput& operator=(const TextOutput&) = delete;

  /// Appends `line`. A failure shows at `Close`.
  void WriteLine(std::string_view line) {
    if (screen_ != nullptr) {
      screen_->ShowMessage(line);
      return;
    }
    block_.append(line).append("\r\n");
    if (block_.size() >= kBlock) WriteBlock();
  }
  /// Throws `Halt` with the system's error if anything could not be written.
  void Close() {
    WriteBlock();
    if (file_) file_->Close();
  }
  /// Empty for the screen.
  std::string Path() const { return file_ ? file_->Path() : std::string(); }

 private:
  static constexpr std::size_t kBlock = 65536;

  void WriteBlock() {
    if (file_) file_->Write(block_);
    block_.clear();
  }

  std::optional<OutputFile> file_;
  Console* screen_ = nullptr;
  std::string block_;
};

}  // namespace tessaly
