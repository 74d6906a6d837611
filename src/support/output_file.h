// A file that the program writes from start to end.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tessaly {

/// Throws `Halt` with the system's error unless `path` can be written. Leaves the file as it is, or absent.
void CheckWritable(const std::string& path);

/// A file being written. What opens it closes it: `Close` says whether everything reached the disk.
class OutputFile {
 public:
  /// Creates or empties `path`. Throws `Halt` with the system's error.
  explicit OutputFile(std::string path);
  ~OutputFile();
  OutputFile(OutputFile&& other) noexcept;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  OutputFile& operator=(OutputFile&&) = delete;

  /// Appends bytes. A failure shows at `Close`.
  void Write(std::string_view bytes);
  /// Throws `Halt` with the system's error if anything could not be written.
  void Close();
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
  std::FILE* file_ = nullptr;
  int error_ = 0;
};

}  // namespace tessaly
