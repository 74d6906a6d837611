// A text file of lines for other programs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "support/output_file.h"

namespace tessaly {

/// Writes lines that end in CR LF, as those of the report do. `Close` tells whether all of them reached the disk.
class TextOutput {
 public:
  /// Creates or empties `path`. Throws `Halt` with the system's error.
  explicit TextOutput(std::string path) : file_(std::move(path)) {}
  /// What was written remains, though nobody can tell whether it reached the disk.
  ~TextOutput() { WriteBlock(); }
  TextOutput(const TextOutput&) = delete;
  TextOutput& operator=(const TextOutput&) = delete;

  /// Appends `line`. A failure shows at `Close`.
  void WriteLine(std::string_view line) {
    block_.append(line).append("\r\n");
    if (block_.size() >= kBlock) WriteBlock();
  }
  /// Throws `Halt` with the system's error if anything could not be written.
  void Close() {
    WriteBlock();
    file_.Close();
  }
  const std::string& Path() const { return file_.Path(); }

 private:
  static constexpr std::size_t kBlock = 65536;

  void WriteBlock() {
    file_.Write(block_);
    block_.clear();
  }

  OutputFile file_;
  std::string block_;
};

}  // namespace tessaly
