// Counts by bin and list, for a few occupied combinations out of very many.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessaly {

/// What one bin of one list holds. Whole numbers as doubles: exact up to 2^53.
struct BinCount {
  std::int32_t Bin = 0;
  std::int32_t List = 0;
  double Count = 0;
  double ScoreSum = 0;
};

/// Collects counts in a hash table of open addresses. Memory goes with the occupied combinations only.
class BinCounts {
 public:
  /// Adds one observation to `bin` of `list`, both from 0 on.
  void Add(std::int32_t bin, std::int32_t list, double score);
  /// All that was counted, by list, then bin.
  std::vector<BinCount> Sorted() &&;

 private:
  /// Where the combination is, or the free place for it. The table has one.
  BinCount& Place(std::int32_t bin, std::int32_t list);
  void Grow();

  /// A count of 0 marks a free place; the size is a power of two.
  std::vector<BinCount> places_;
  std::size_t occupied_ = 0;
};

/// Puts `counts` in order of list, then bin.
void SortByList(std::vector<BinCount>& counts);

/// Lists of occupied bins in ascending order, one list after the other.
class BinLists {
 public:
  BinLists() = default;
  /// `counts` by list, then bin; `lists` is the number of lists.
  BinLists(std::vector<BinCount> counts, std::int32_t lists);

  /// List `list`, from 0; empty for one that there is not.
  std::span<const BinCount> List(std::int32_t list) const;
  /// Bins of the list that has most.
  std::int32_t Longest() const;
  const std::vector<BinCount>& All() const { return counts_; }

 private:
  std::vector<BinCount> counts_;
  /// Where each list begins, and the end.
  std::vector<std::size_t> starts_;
};

}  // namespace tessaly
