// Numbers for the keys of bias terms, found again in constant time.
#pragma once

#include <cstdint>
#include <vector>

#include "state/indexes.h"

namespace tessaly {

/// The keys that were met, each once. Keys are not negative. A hash table with open addressing: the pass over the
/// observations asks it once for each of them.
class TermNumbers {
 public:
  TermNumbers() : slots_(std::size_t{1} << kFirstBits), shift_(64 - kFirstBits) {}

  void Meet(std::int64_t key);
  /// Numbers the keys met from 1 in ascending order, and gives them in this order.
  std::vector<std::int64_t> Number();
  /// The number of `key`; 0 if it was not met.
  TermIndex Find(std::int64_t key) const { return slots_[SlotOf(key)].Term; }

 private:
  static constexpr int kFirstBits = 10;

  struct Slot {
    std::int64_t Key = -1;
    TermIndex Term{0};
  };

  /// Where `key` is, or the free place for it.
  std::size_t SlotOf(std::int64_t key) const {
    // Multiplication by the golden ratio spreads neighbouring keys (Knuth 1973, 6.4).
    auto at = static_cast<std::size_t>((static_cast<std::uint64_t>(key) * 0x9E3779B97F4A7C15U) >> shift_);
    while (slots_[at].Key != key && slots_[at].Key >= 0) at = (at + 1) & (slots_.size() - 1);
    return at;
  }
  void Grow();

  std::vector<Slot> slots_;
  int shift_;
  std::size_t count_ = 0;
};

}  // namespace tessaly
