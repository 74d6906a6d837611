// Element labels as references in data.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "state/elements.h"
#include "state/facets.h"
#include "support/host.h"

namespace tessaly {

/// Sorted label lists, one for each facet that data may name by label. A label's key is its text up to the first ":",
/// right-trimmed, with "_" read as "-". Lists are sorted when they are first needed.
class LabelLists {
 public:
  LabelLists(const FacetTable& facets, const ElementTable& elements, Console& console);

  /// Record (0 for the null element) whose key is `text`, or else the first key in sort order that begins with it.
  /// Outer quotes and blanks of `text` do not count. Nothing if there is none.
  std::optional<ElementIndex> FindLabel(FacetNumber facet, std::string_view text);

 private:
  struct Entry {
    std::string Key;
    ElementIndex Element;
  };
  struct Slot {
    std::uint32_t Hash = 0;
    /// Where in `Sorted` the key stands, -1 for a slot that is free.
    std::int32_t At = -1;
  };
  struct List {
    bool Filled = false;
    std::vector<Entry> Sorted;
    /// The first entry of each key that a text can be equal to, at the highest bits of its hash or in the next free
    /// slot behind; a power of two, at least twice as many as there are entries.
    std::vector<Slot> Slots;
    /// How far a hash is shifted to the number of its slot.
    int Shift = 0;
  };
  void Fill(FacetNumber facet);
  static void FillSlots(List& list);
  /// The slot that holds `key`, or the free one where it belongs.
  static std::size_t SlotOf(const List& list, std::uint32_t hash, std::string_view key);
  static std::optional<ElementIndex> Search(const std::vector<Entry>& sorted, std::string_view text);

  const FacetTable& facets_;
  const ElementTable& elements_;
  Console& console_;
  Table<FacetNumber, List> lists_;
};

}  // namespace tessaly
