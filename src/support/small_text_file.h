// Small text files that the program keeps for its user: read whole or not at all, and replaced as a whole.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "support/file_descriptor.h"

namespace tessaly {

/// Longest small file, in bytes.
constexpr std::size_t kLongestSmallFile = std::size_t{1} << 20;

/// The lines of `path`, or nothing if there is no such file. Throws `Halt` with the system's error if it cannot be
/// read, and `Halt{InvalidFileFormat}`, with the reason as argument, if it is too long or no text: TAB is the only
/// control character of a text.
std::optional<std::vector<std::string>> ReadSmallFile(const std::string& path);

/// A small file on its way to new contents. As long as this lives, no other process changes files in its folder in this
/// way: what is read meanwhile may be put back changed.
class SmallFileUpdate {
 public:
  /// Makes the folder of `path` if it is missing. Waits for other processes, but not for long: one that hangs or a file
  /// system without locks must not stop everybody. Throws `Halt` with the system's error if there is no such folder.
  explicit SmallFileUpdate(std::string path);

  /// Puts `lines` in place of the file at once, so that whoever reads it finds the old lines or the new ones. A link
  /// stays a link, and permissions stay. Throws `Halt` with the system's error, and `Halt{InvalidFileFormat}` for what
  /// `ReadSmallFile` would refuse; the file is as it was then.
  void Replace(const std::vector<std::string>& lines) const;

 private:
  std::string path_;
  FileDescriptor folder_;
};

}  // namespace tessaly
