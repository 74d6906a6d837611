// The elements that data name and `Labels=` does not.
#pragma once

#include <cstddef>
#include <functional>
#include <unordered_set>
#include <vector>

#include "state/counters.h"

namespace tessaly {

/// Collects unspecified elements without repeats.
class UnspecifiedList {
 public:
  void Note(const UnspecifiedElement& element) { elements_.insert(element); }
  /// All of them, by facet, label, number.
  std::vector<UnspecifiedElement> Sorted() const;

 private:
  struct ElementHash {
    std::size_t operator()(const UnspecifiedElement& element) const;
  };

  std::unordered_set<UnspecifiedElement, ElementHash> elements_;
};

}  // namespace tessaly
