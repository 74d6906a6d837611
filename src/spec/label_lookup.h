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
  void Fill(FacetNumber facet);

  const FacetTable& facets_;
  const ElementTable& elements_;
  Console& console_;
  Table<FacetNumber, std::vector<Entry>> lists_;
  Table<FacetNumber, char> filled_;
};

}  // namespace tessaly
