#include "interaction/term_numbers.h"

#include <algorithm>
#include <utility>

namespace tessaly {

void TermNumbers::Meet(std::int64_t key) {
  Slot& slot = slots_[SlotOf(key)];
  if (slot.Key == key) return;
  slot.Key = key;
  if (2 * ++count_ > slots_.size()) Grow();
}

void TermNumbers::Grow() {
  const std::vector<Slot> before = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
  --shift_;
  for (const Slot& slot : before)
    if (slot.Key >= 0) slots_[SlotOf(slot.Key)] = slot;
}

std::vector<std::int64_t> TermNumbers::Number() {
  std::vector<std::int64_t> keys;
  keys.reserve(count_);
  for (const Slot& slot : slots_)
    if (slot.Key >= 0) keys.push_back(slot.Key);
  std::sort(keys.begin(), keys.end());
  TermIndex number{0};
  for (const std::int64_t key : keys) slots_[SlotOf(key)].Term = ++number;
  return keys;
}

}  // namespace tessaly
