// A file that the program writes from start to end.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "support/file_descriptor.h"

namespace tessaly {

/// Asked before each step that may keep the program waiting, and when a signal comes in it: whether to give up. What it
/// throws passes through.
using GivesUp = std::function<bool()>;

/// Writes all of `bytes` to an open file, however small the steps that the system takes. Gives 0, or the system's
/// error; EINTR if `givesUp`, if there is one, says yes.
int WriteAll(int descriptor, std::string_view bytes, const GivesUp& givesUp = nullptr);

/// Throws `Halt` with the system's error unless `path` can be written. Leaves the file as it is, or absent.
void CheckWritable(const std::string& path);

/// A file being written. What opens it closes it: `Close` says whether everything reached the disk.
class OutputFile {
 public:
  enum class Opening { Now, WithFirstBlock };

  /// Creates or empties `path`, now or when there is something to write: what is refused until then leaves the file as
  /// it was. Throws `Halt` with the system's error if that is now; otherwise the failure shows at `Close`. `givesUp` is
  /// asked while a pipe or device keeps the program waiting; what it throws comes out of any of the functions.
  explicit OutputFile(std::string path, Opening opening = Opening::Now, GivesUp givesUp = nullptr);
  /// What was written remains, though nobody can tell whether it reached the disk. Waits for no pipe.
  ~OutputFile();
  OutputFile(OutputFile&& other) noexcept = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  OutputFile& operator=(OutputFile&&) = delete;

  /// Appends bytes. A failure shows at `Close`.
  void Write(std::string_view bytes) {
    block_.append(bytes);
    if (block_.size() >= kBlock) WriteBlock();
  }
  /// Throws `Halt` with the system's error if anything could not be written.
  void Close();
  const std::string& Path() const { return path_; }

 private:
  static constexpr std::size_t kBlock = 65536;

  void OpenFile();
  void WriteBlock();

  std::string path_;
  GivesUp givesUp_;
  bool waits_ = false;
  FileDescriptor file_;
  /// What is not yet written.
  std::string block_;
  int error_ = 0;
};

}  // namespace tessaly
