#include "estimate/subset_lists.h"

#include <algorithm>
#include <bitset>
#include <utility>

namespace tessaly {

namespace {

/// Longer lists are searched as sets.
constexpr std::size_t kSearchedInOrder = 32;

std::size_t Place(SubsetNumber subset) {
  return static_cast<std::size_t>(subset);
}

}  // namespace

const SubsetList& SubsetLists::SubsetsOf(ElementIndex element) {
  if (elementSubsets_[element].Outdated > 0) CleanUp(element);
  return elementSubsets_[element].List;
}

void SubsetLists::CleanUp(ElementIndex element) {
  Membership& membership = elementSubsets_[element];
  std::erase_if(membership.List, [&](SubsetNumber subset) { return At(subset).Now == Subset::State::Merged; });
  membership.Outdated = 0;
  Summarize(element);
}

bool SubsetLists::Holds(ElementIndex element, SubsetNumber subset) {
  Membership& membership = elementSubsets_[element];
  const SubsetList& list = membership.List;
  if (list.size() <= kSearchedInOrder) return std::find(list.begin(), list.end(), subset) != list.end();
  std::vector<bool>& set = membership.Set;
  if (set.empty()) {
    set.resize(Place(kMostSubsets) + 1);
    for (const SubsetNumber listed : list) set[Place(listed)] = true;
  }
  return set[Place(subset)];
}

bool SubsetLists::Add(ElementIndex element, SubsetNumber subset) {
  if (Holds(element, subset)) return false;
  Membership& membership = elementSubsets_[element];
  membership.List.push_back(subset);
  if (!membership.Set.empty()) membership.Set[Place(subset)] = true;
  At(subset).Elements.push_back(element);
  Summarize(element);
  return true;
}

void SubsetLists::Summarize(ElementIndex element) {
  const Membership& membership = elementSubsets_[element];
  const bool only = membership.List.size() == 1 && membership.Outdated == 0;
  onlySubset_[element] = only ? membership.List.front() : SubsetNumber{0};
}

void SubsetLists::Drop(ElementIndex element) {
  elementSubsets_[element] = {};
  onlySubset_[element] = kNotLinking;
}

SubsetNumber SubsetLists::NewSubset() {
  while (Place(lowestFree_) < subsets_.size() && At(lowestFree_).Now != Subset::State::Free) ++lowestFree_;
  if (lowestFree_ > kMostSubsets) return 0;
  if (Place(lowestFree_) == subsets_.size()) subsets_.emplace_back();
  At(lowestFree_).Now = Subset::State::Live;
  return lowestFree_;
}

SubsetNumber SubsetLists::Merge(SubsetNumber a, SubsetNumber b) {
  const bool intoA = At(a).Elements.size() >= At(b).Elements.size();
  const SubsetNumber into = intoA ? a : b;
  const SubsetNumber from = intoA ? b : a;
  At(from).Now = Subset::State::Merged;
  for (const ElementIndex element : std::exchange(At(from).Elements, {}))
    if (ElementLinking(element)) Replace(element, from, into);
  return into;
}

void SubsetLists::Replace(ElementIndex element, SubsetNumber from, SubsetNumber into) {
  Membership& membership = elementSubsets_[element];
  if (membership.Set.empty()) {
    std::erase(membership.List, from);
  } else {
    // Taking a number out of a long list costs as much as reading it, so that this waits until it pays.
    ++membership.Outdated;
  }
  Add(element, into);
  Summarize(element);
  if (2 * membership.Outdated > membership.List.size()) CleanUp(element);
}

std::int32_t SubsetLists::CountSubsets() {
  for (Subset& subset : subsets_) subset.Elements.clear();
  for (ElementIndex element{1}; element <= LastElement(); ++element)
    for (const SubsetNumber subset : SubsetsOf(element)) At(subset).Elements.push_back(element);
  std::int32_t count = 0;
  for (Subset& subset : subsets_) {
    subset.Now = subset.Elements.empty() ? Subset::State::Free : Subset::State::Live;
    if (!subset.Elements.empty()) ++count;
  }
  for (Membership& membership : elementSubsets_) membership.Set.clear();
  lowestFree_ = 1;
  return count;
}

SubsetList Intersection(const SubsetList& a, const SubsetList& b) {
  std::bitset<std::size_t{SubsetLists::kMostSubsets} + 1> inB;
  for (const SubsetNumber subset : b) inB.set(Place(subset));
  SubsetList both;
  for (const SubsetNumber subset : a)
    if (inB.test(Place(subset))) both.push_back(subset);
  return both;
}

}  // namespace tessaly
