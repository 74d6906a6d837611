#include "estimate/subset_detector.h"

#include <algorithm>
#include <map>

namespace tessaly {

SubsetDetector::SubsetDetector(const Analysis& analysis)
    : lists_(analysis.Elements.ElementCount()), repeatedFacet_(analysis.Fields.RepeatedFacet) {
  members_.reserve(static_cast<std::size_t>(analysis.Fields.ActiveFacetCount()));
  Seed(analysis);
}

void SubsetDetector::Seed(const Analysis& analysis) {
  const ElementTable& elements = analysis.Elements;
  const auto anchored = [&](ElementIndex e) { return elements.ElementStatus[e] == ElementStatus::Anchored; };
  for (const Facet& facet : analysis.Facets) {
    std::map<std::int16_t, std::int32_t> members;
    for (const ElementIndex element : facet.Elements())
      if (anchored(element)) ++members[elements.ElementGroup[element]];
    for (const ElementIndex element : facet.Elements()) {
      const std::int16_t group = elements.ElementGroup[element];
      if (group > 0 ? members[group] == 1 : anchored(element)) lists_.Drop(element);
    }
  }
}

void SubsetDetector::ScanObservation(const Observation& obs) {
  if (KnownToBeConnected(obs)) return;
  CollectMembers(obs);
  if (members_.empty()) return;
  if (members_.size() > 1) {
    Connect();
    return;
  }
  // All other elements belong to the frame, and so does this one now.
  SubsetChanged = true;
  lists_.Drop(members_.front());
}

/// Whether two or more elements link and all that do have the same subset alone: true for nearly every observation of
/// connected data.
bool SubsetDetector::KnownToBeConnected(const Observation& obs) const {
  if (repeatedFacet_) return false;
  SubsetNumber common = 0;
  int linking = 0;
  for (const ObservedElement& own : obs.Elements) {
    if (own.CurrentElement == kNoElement) continue;
    const SubsetNumber only = lists_.OnlySubset(own.CurrentElement);
    if (only == SubsetLists::kNotLinking) continue;
    if (only == 0 || (common != 0 && only != common)) return false;
    common = only;
    ++linking;
  }
  return linking > 1;
}

void SubsetDetector::CollectMembers(const Observation& obs) {
  members_.clear();
  for (const ObservedElement& own : obs.Elements) {
    const ElementIndex element = own.CurrentElement;
    if (element == kNoElement || !lists_.ElementLinking(element)) continue;
    if (repeatedFacet_ && std::find(members_.begin(), members_.end(), element) != members_.end()) continue;
    members_.push_back(element);
  }
}

void SubsetDetector::Connect() {
  SubsetNumber subset = JoinShared();
  if (subset == 0) {
    subset = lists_.NewSubset();
    if (subset == 0) {
      ++UnassignedPoints;
      return;
    }
    SubsetChanged = true;
  }
  for (const ElementIndex element : members_)
    if (lists_.Add(element, subset)) SubsetChanged = true;
}

bool SubsetDetector::HeldByAllButOne(SubsetNumber subset) {
  int missing = 0;
  for (const ElementIndex element : members_)
    if (!lists_.Holds(element, subset) && ++missing > 1) return false;
  return true;
}

/// Merges the subsets that hold all members, or all but one: the one that they become, 0 for none.
SubsetNumber SubsetDetector::JoinShared() {
  // Such a subset is missing from one list at most, so that it stands in one of the two shortest.
  std::sort(members_.begin(), members_.end(),
            [&](ElementIndex a, ElementIndex b) { return lists_.AtMost(a) < lists_.AtMost(b); });
  shared_.clear();
  for (const SubsetNumber subset : lists_.SubsetsOf(members_[0]))
    if (HeldByAllButOne(subset)) shared_.push_back(subset);
  for (const SubsetNumber subset : lists_.SubsetsOf(members_[1]))
    if (!lists_.Holds(members_[0], subset) && HeldByAllButOne(subset)) shared_.push_back(subset);
  SubsetNumber joined = 0;
  for (const SubsetNumber subset : shared_) {
    if (joined != 0) SubsetChanged = true;
    joined = joined == 0 ? subset : lists_.Merge(joined, subset);
  }
  return joined;
}

}  // namespace tessaly
