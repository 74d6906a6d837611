// Cleaned lines of the specification, one after the other.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "spec/input_stack.h"
#include "spec/split_line.h"

namespace tessaly {

/// Reads the specification line by line. Number and text of the line at hand stand in the input line of the stack.
class SpecReader {
 public:
  /// Longest line of a specification: what is in it comes again in many lines of the report.
  static constexpr std::size_t kLongestLine = std::size_t{64} << 10;
  /// Longest specification, without data: files may be included thousands of times.
  static constexpr std::size_t kLongestSpecification = std::size_t{512} << 20;

  /// `comments` receives every line that contains ";;".
  SpecReader(InputStack& input, std::vector<std::string>& comments) : input_(input), comments_(comments) {}

  /// The next line that is not empty, cleaned, or nothing at the end. The view holds until the next call.
  /// Throws `Halt{InvalidFileFormat}` for a line above `kLongestLine`, and `Halt{IncompatibleFile}` for more than
  /// `kLongestSpecification` bytes in all.
  std::optional<std::string_view> ReadLine();
  /// The next line of a block, or nothing where the block ends: at "*" and at the end of the input.
  std::optional<SplitLine> NextBlockLine();
  /// Hands out the line last read once more: it belongs to whoever reads next.
  void Unread() { unread_ = true; }
  /// Reads over all that is left.
  void SkipRest();

 private:
  InputStack& input_;
  std::vector<std::string>& comments_;
  std::string work_;
  bool unread_ = false;
  std::size_t length_ = 0;
};

}  // namespace tessaly
