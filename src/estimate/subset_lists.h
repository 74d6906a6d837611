// Which subsets each element belongs to while the connection of the data is being found out.
#pragma once

#include <cstdint>
#include <vector>

#include "state/indexes.h"

namespace tessaly {

using SubsetNumber = std::int16_t;
/// Subset numbers without repeats, in the order in which they were added.
using SubsetList = std::vector<SubsetNumber>;

/// A subset list for each element, and the elements of each subset.
class SubsetLists {
 public:
  static constexpr SubsetNumber kMostSubsets = 16383;

  explicit SubsetLists(std::int32_t elementCount)
      : elementSubsets_(elementCount), onlySubset_(elementCount, SubsetNumber{0}), subsets_(1) {}

  /// Whether the element can still part or connect subsets.
  bool ElementLinking(ElementIndex element) const { return onlySubset_[element] != kNotLinking; }
  /// The subset of an element that belongs to one alone; 0 for none or several, `kNotLinking` if it does not link.
  SubsetNumber OnlySubset(ElementIndex element) const { return onlySubset_[element]; }
  static constexpr SubsetNumber kNotLinking = -1;

  const SubsetList& SubsetsOf(ElementIndex element);
  /// At least the number of the element's subsets, without looking at them.
  std::size_t AtMost(ElementIndex element) const { return elementSubsets_[element].List.size(); }
  bool Holds(ElementIndex element, SubsetNumber subset);
  /// Adds `subset` to the element's list; false if the list has it.
  bool Add(ElementIndex element, SubsetNumber subset);
  /// From now on the element parts and connects nothing.
  void Drop(ElementIndex element);

  /// The lowest free number, or 0 if all are in use.
  SubsetNumber NewSubset();
  /// Makes two subsets one, whichever number it then has.
  SubsetNumber Merge(SubsetNumber a, SubsetNumber b);
  /// The number of subsets that some linking element belongs to; the numbers of all others are free again.
  std::int32_t CountSubsets();

  ElementIndex LastElement() const { return elementSubsets_.last(); }

 private:
  struct Membership {
    SubsetList List;
    /// The same by subset number, for a list that is long to search; otherwise empty.
    std::vector<bool> Set;
    /// Numbers in the list that were merged into others.
    std::size_t Outdated = 0;
  };
  struct Subset {
    enum class State { Free, Live, Merged } Now = State::Free;
    std::vector<ElementIndex> Elements;
  };

  Subset& At(SubsetNumber subset) { return subsets_[static_cast<std::size_t>(subset)]; }
  void Replace(ElementIndex element, SubsetNumber from, SubsetNumber into);
  void CleanUp(ElementIndex element);
  void Summarize(ElementIndex element);

  Table<ElementIndex, Membership> elementSubsets_;
  Table<ElementIndex, SubsetNumber> onlySubset_;
  /// By number; number 0 is none.
  std::vector<Subset> subsets_;
  SubsetNumber lowestFree_ = 1;
};

/// The numbers of `a` that are in `b` too.
SubsetList Intersection(const SubsetList& a, const SubsetList& b);

}  // namespace tessaly
