#include "estimate/consolidate_subsets.h"

#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace tessaly {

namespace {

/// What the lists of several elements have in common.
class CommonSubsets {
 public:
  void Take(const SubsetList& list) {
    if (list.empty()) return;
    common_ = common_ ? Intersection(list, *common_) : list;
  }
  bool Any() const { return common_ && !common_->empty(); }

 private:
  /// Nothing before the first list.
  std::optional<SubsetList> common_;
};

/// Within one facet: the subsets that elements hold in common, as sets that do not overlap.
class FacetSubsets {
 public:
  void Take(const SubsetList& list) {
    std::set<int> touched;
    bool inside = true;
    for (const SubsetNumber subset : list) {
      const int set = SetOf(subset);
      if (set != kNone) touched.insert(set);
      inside = inside && set != kNone;
    }
    if (touched.size() == 1 && inside) return;
    const int home = touched.empty() ? NewSet() : *touched.begin();
    if (!touched.empty()) Joined = true;
    for (const int set : touched)
      if (set != home) MoveAll(set, home);
    for (const SubsetNumber subset : list)
      if (SetOf(subset) == kNone) Put(subset, home);
  }
  /// The set that holds `subset`, or null.
  const SubsetList* SetWith(SubsetNumber subset) const {
    const int set = SetOf(subset);
    return set == kNone ? nullptr : &sets_[static_cast<std::size_t>(set)];
  }
  /// A list held subsets in and outside an earlier set.
  bool Joined = false;

 private:
  static constexpr int kNone = -1;

  int SetOf(SubsetNumber subset) const { return setOf_[static_cast<std::size_t>(subset)]; }
  int NewSet() {
    sets_.emplace_back();
    return static_cast<int>(sets_.size()) - 1;
  }
  void Put(SubsetNumber subset, int set) {
    setOf_[static_cast<std::size_t>(subset)] = set;
    sets_[static_cast<std::size_t>(set)].push_back(subset);
  }
  void MoveAll(int from, int to) {
    for (const SubsetNumber subset : std::exchange(sets_[static_cast<std::size_t>(from)], {})) Put(subset, to);
  }

  std::vector<SubsetList> sets_;
  std::vector<int> setOf_ = std::vector<int>(std::size_t{SubsetLists::kMostSubsets} + 1, kNone);
};

class Consolidation {
 public:
  Consolidation(const FacetTable& facets, const ElementTable& elements, SubsetLists& lists)
      : facets_(facets), elements_(elements), lists_(lists) {}

  bool Run() {
    ResolveFacets();
    if (lists_.CountSubsets() <= 1) return changed_;
    for (const Facet& facet : facets_) MergeInFacet(facet);
    return changed_;
  }

 private:
  void ResolveFacets() {
    for (const Facet& facet : facets_)
      if (facet.FacetCenter != Centering::NotCentered) DropIfShared(facet);
    for (const Facet& facet : facets_) DropSharedGroups(facet);
    for (const Facet& facet : facets_) DropIfShared(facet);
  }

  void Drop(ElementIndex element) {
    lists_.Drop(element);
    changed_ = true;
  }

  /// A facet whose elements share a subset puts nothing between subsets.
  void DropIfShared(const Facet& facet) {
    CommonSubsets common;
    for (const ElementIndex element : facet.Elements())
      if (lists_.ElementLinking(element)) common.Take(lists_.SubsetsOf(element));
    if (!common.Any()) return;
    for (const ElementIndex element : facet.Elements())
      if (lists_.ElementLinking(element)) Drop(element);
  }

  bool IsLinkingGroupMember(ElementIndex element) const {
    return elements_.ElementGroup[element] > 0 && elements_.ElementStatus[element] == ElementStatus::Anchored &&
           lists_.ElementLinking(element);
  }

  /// The mean of a group is held: if its members share a subset they are all tied to the frame.
  void DropSharedGroups(const Facet& facet) {
    std::map<std::int16_t, CommonSubsets> groups;
    for (const ElementIndex element : facet.Elements())
      if (IsLinkingGroupMember(element)) groups[elements_.ElementGroup[element]].Take(lists_.SubsetsOf(element));
    for (const ElementIndex element : facet.Elements())
      if (IsLinkingGroupMember(element) && groups[elements_.ElementGroup[element]].Any()) Drop(element);
  }

  void MergeInFacet(const Facet& facet) {
    std::vector<ElementIndex> members;
    for (const ElementIndex element : facet.Elements())
      if (lists_.ElementLinking(element) && !lists_.SubsetsOf(element).empty()) members.push_back(element);
    SpreadCommonSubsets(members);
    DropThoseInAll(members);
  }

  /// Subsets that have an element of the facet in common are one to all its elements.
  void SpreadCommonSubsets(const std::vector<ElementIndex>& members) {
    FacetSubsets sets;
    for (const ElementIndex element : members) {
      const SubsetList& list = lists_.SubsetsOf(element);
      if (list.size() == 1) {
        singleMet_ = true;
      } else {
        sets.Take(list);
      }
    }
    if (!sets.Joined && !singleMet_) return;
    for (const ElementIndex element : members) {
      const SubsetList& list = lists_.SubsetsOf(element);
      const SubsetList* const set = sets.SetWith(list.front());
      if (set == nullptr || set->size() == list.size()) continue;
      for (const SubsetNumber subset : *set) lists_.Add(element, subset);
      changed_ = true;
    }
  }

  void DropThoseInAll(const std::vector<ElementIndex>& members) {
    CommonSubsets common;
    std::set<SubsetNumber> all;
    for (const ElementIndex element : members) {
      const SubsetList& list = lists_.SubsetsOf(element);
      common.Take(list);
      all.insert(list.begin(), list.end());
    }
    for (const ElementIndex element : members)
      if (common.Any() || lists_.SubsetsOf(element).size() == all.size()) Drop(element);
  }

  const FacetTable& facets_;
  const ElementTable& elements_;
  SubsetLists& lists_;
  bool changed_ = false;
  /// Some element, of this facet or an earlier one, belongs to a single subset.
  bool singleMet_ = false;
};

}  // namespace

bool ConsolidateSubsets(const FacetTable& facets, const ElementTable& elements, SubsetLists& lists) {
  return Consolidation(facets, elements, lists).Run();
}

}  // namespace tessaly
