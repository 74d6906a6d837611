// Temporary files: positioned binary work files that leave nothing behind.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/file_descriptor.h"

namespace tessaly {

/// The folder for temporary files: TMPDIR if set and not empty, else the system's.
std::string TemporaryFolder();

/// `folder`, or the folder for temporary files if it is empty.
std::string TemporaryFolderOr(const std::string& folder);

/// A new unique file name in `folder`, with `prefix` and `extension` (".txt"). The file is new, empty and
/// readable by this user alone. If `folder` takes no file, the name is in `TemporaryFolder()`. Throws `Halt` with the
/// system's error if that fails too.
std::string MakeTemporaryName(const std::string& folder, std::string_view prefix, std::string_view extension);

/// Files that somebody may look at until this goes; then they are gone.
class TemporaryFiles {
 public:
  TemporaryFiles() = default;
  ~TemporaryFiles();
  TemporaryFiles(const TemporaryFiles&) = delete;
  TemporaryFiles& operator=(const TemporaryFiles&) = delete;

  /// A new one; see `MakeTemporaryName`.
  const std::string& Add(const std::string& folder, std::string_view prefix, std::string_view extension);

 private:
  std::vector<std::string> names_;
};

/// A binary file for one run, read and written at byte positions. It has no name in the folder once it is open, so that
/// nothing stays behind however the run ends.
class WorkFile {
 public:
  /// Creates the file in `folder`. Throws `Halt{WorkFileProblem}`, with "file name: system's error" as argument.
  explicit WorkFile(const std::string& folder);

  /// Writes all `size` bytes at byte `position` (from 0). Throws `Halt{WorkFileProblem}` (disk full and the like).
  void Write(std::int64_t position, const char* data, std::size_t size);
  /// Reads up to `size` bytes at byte `position`; gives how many there were. Throws `Halt{WorkFileProblem}`.
  std::size_t Read(std::int64_t position, char* data, std::size_t size) const;

 private:
  std::string name_;
  FileDescriptor file_;
};

}  // namespace tessaly
