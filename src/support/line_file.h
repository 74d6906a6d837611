// Bytes of a file to lines, whatever its line ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/file_descriptor.h"

namespace tessaly {

/// A text file read line by line. CR, LF, CR LF and LF CR each end one line; a UTF-8 byte-order mark at the start is
/// dropped; a last line without line end is a line, a final line end adds none. Reads in large blocks; a line may be
/// longer than a block.
class LineFile {
 public:
  /// Longest line that is read: a longer one cannot be a line of text.
  static constexpr std::int64_t kLongestLine = std::int64_t{64} << 20;

  /// Opens `path`. Throws `Halt` with the system's error if it cannot be opened or is a folder. `interrupted` is called
  /// when a signal comes while the file (a pipe) keeps the program waiting, here or in `Next`; what it throws passes
  /// through.
  explicit LineFile(std::string path, std::function<void()> interrupted = nullptr);

  /// The next line without its line end, or nothing at the end. The view holds until the next `Next`.
  /// Throws `Halt` on a read error, with "path: system's error" as argument, and `Halt{InvalidFileFormat}` for a line
  /// above `kLongestLine`.
  std::optional<std::string_view> Next();
  /// Whether every line has been handed out.
  bool AtEnd();

  const std::string& Path() const { return path_; }
  /// Length in bytes when opened; 0 for what is no ordinary file.
  std::int64_t FileLength() const { return length_; }
  /// The name of a format that is not text, told by the first two bytes ("RTF", "Unicode"), or an empty text.
  std::string_view ForeignFormat();

 private:
  void Start();
  void Refill();
  std::size_t FindLineEnd(std::size_t from);

  std::string path_;
  std::function<void()> interrupted_;
  std::int64_t length_ = 0;
  FileDescriptor file_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  /// The first LF and the first CR from `begin_` on, or `end_` if there is none.
  std::size_t nextLf_ = 0;
  std::size_t nextCr_ = 0;
  bool lineEndsKnown_ = false;
  bool sourceEnded_ = false;
  bool started_ = false;
  /// The file has nothing but a byte-order mark, which makes one empty line.
  bool onlyMark_ = false;
  std::string_view foreignFormat_;
};

}  // namespace tessaly
