// Sorting of binary records that need not fit in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/work_file.h"

namespace tessaly {

/// Puts records of one size in the order of their first `keyBytes` bytes, compared as unsigned bytes; records of equal
/// keys keep the order in which they were added. What does not fit into `partBytes` of memory is sorted in parts, which
/// are written to a work file in `folder` and merged. Needs no file for less, and no sort for records that come in
/// order. First all `Add`, then one `Sort`, then `Next`.
class RecordSorter {
 public:
  /// `keyBytes` is at most `recordBytes`. With very small parts, merging takes 4 KiB for each of two runs all the same.
  RecordSorter(std::string folder, std::size_t recordBytes, std::size_t keyBytes,
               std::size_t partBytes = std::size_t{32} << 20);
  ~RecordSorter();

  /// Copies the `recordBytes` bytes at `record`. When a part is full, sorts and writes it first, without a poll: throws
  /// `Halt{WorkFileProblem}` if it cannot be written.
  void Add(const char* record) {
    if (records_.size() == fullPart_) WritePart([] {});
    records_.insert(records_.end(), record, record + recordBytes_);
    ++count_;
  }

  /// Ends adding. `poll` is called between pieces of work of at most about a tenth of a second (parts of more than some
  /// 100 MB make them longer); what it throws passes through. Throws `Halt{WorkFileProblem}`.
  void Sort(const std::function<void()>& poll);

  /// The next record in order, valid until the next call; null behind the last one. Throws `Halt{WorkFileProblem}`.
  const char* Next();

  /// Records added so far.
  std::int64_t Count() const { return count_; }

 private:
  /// Stands for a record in memory while it is sorted.
  struct Entry {
    std::uint64_t Prefix;
    std::size_t Number;
  };
  /// Bytes of the work file with records in order.
  struct Run {
    std::int64_t Begin;
    std::int64_t End;
  };
  class PartSort;
  class RunWriter;
  class Merge;

  bool PartInOrder() const;
  void SortPart(const std::function<void()>& poll);
  void WritePart(const std::function<void()>& poll);
  void MergeRuns(std::size_t first, std::size_t count, const std::function<void()>& poll);

  std::size_t PartCount() const { return records_.size() / recordBytes_; }
  /// Record `i` of the sorted part, from 0.
  const char* PartRecord(std::size_t i) const {
    return records_.data() + recordBytes_ * (entries_.empty() ? i : entries_[i].Number);
  }

  std::string folder_;
  std::size_t recordBytes_;
  std::size_t keyBytes_;
  std::size_t partBytes_;
  std::size_t fullPart_;
  std::vector<char> records_;
  /// The order of `records_`; empty if they are in order.
  std::vector<Entry> entries_;
  std::optional<WorkFile> file_;
  std::int64_t fileEnd_ = 0;
  /// In the order of adding.
  std::vector<Run> runs_;
  std::string lastKeyWritten_;
  std::unique_ptr<Merge> merge_;
  std::size_t next_ = 0;
  std::int64_t count_ = 0;
};

}  // namespace tessaly
