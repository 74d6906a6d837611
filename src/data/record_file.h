// Fixed-length binary records on disk, one block of them in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/work_file.h"

namespace tessaly {

/// Records of one length, appended once and then read in any order; reading in ascending order costs one read a block.
/// The block in memory serves writing and reading, and covers a window of record numbers (from 1).
class RecordFile {
 public:
  /// `spare` bytes behind each new record may be written too.
  RecordFile(const std::string& folder, std::int32_t recordLength, std::int32_t recordsPerBlock, std::int32_t spare = 0)
      : file_(folder),
        recordLength_(static_cast<std::size_t>(recordLength)),
        recordsPerBlock_(recordsPerBlock),
        blockBytes_(recordLength_ * static_cast<std::size_t>(recordsPerBlock)),
        block_(blockBytes_ + static_cast<std::size_t>(spare)),
        endOfBlock_(1 + recordsPerBlock) {}

  /// Where the next record is to be put. Throws `Halt{WorkFileProblem}` when a full block cannot be written.
  unsigned char* Append() {
    if (filled_ == blockBytes_) WriteFullBlock();
    unsigned char* const record = block_.data() + filled_;
    filled_ += recordLength_;
    return record;
  }

  /// Writes the partly filled block, which stays readable. Call once, after the last record.
  void Flush();

  /// Record `number` (from 1, at most the number appended), after `Flush`. The pointer holds until the next call.
  const unsigned char* Fetch(std::int64_t number) {
    if (number < firstInBlock_ || number >= endOfBlock_) ReadBlock(number);
    return block_.data() + recordLength_ * static_cast<std::size_t>(number - firstInBlock_);
  }
  /// How many records lie behind the pointer that `Fetch(number)` gave last, its own included.
  std::int64_t Following(std::int64_t number) const { return endOfBlock_ - number; }

 private:
  void WriteFullBlock();
  void ReadBlock(std::int64_t number);

  WorkFile file_;
  std::size_t recordLength_;
  std::int32_t recordsPerBlock_;
  std::size_t blockBytes_;
  std::vector<unsigned char> block_;
  std::size_t filled_ = 0;
  std::int64_t firstInBlock_ = 1;
  std::int64_t endOfBlock_;
};

}  // namespace tessaly
