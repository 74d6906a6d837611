// Finds the subsets that the observations connect.
#pragma once

#include <cstdint>
#include <vector>

#include "data/observation_pass.h"
#include "estimate/subset_lists.h"
#include "state/analysis.h"

namespace tessaly {

/// Fed with every observation of a pass. Elements that meet in observations come to share a subset: an observation that
/// holds all but one of its elements in common subset brings in the remaining one.
class SubsetDetector {
 public:
  /// Starts with no connections. Plain anchors, and anchored groups of one, belong to the frame that they define and
  /// link nothing.
  explicit SubsetDetector(const Analysis& analysis);

  void ScanObservation(const Observation& obs);
  SubsetLists& Lists() { return lists_; }
  /// Observations of this pass that found no subset, all numbers being in use.
  std::int64_t UnassignedPoints = 0;
  /// Some connection was new since this was last cleared.
  bool SubsetChanged = false;

 private:
  void Seed(const Analysis& analysis);
  bool KnownToBeConnected(const Observation& obs) const;
  void CollectMembers(const Observation& obs);
  void Connect();
  bool HeldByAllButOne(SubsetNumber subset);
  SubsetNumber JoinShared();

  SubsetLists lists_;
  bool repeatedFacet_;
  /// Linking elements of the observation at hand.
  std::vector<ElementIndex> members_;
  /// Subsets that hold all members, or all but one.
  std::vector<SubsetNumber> shared_;
};

}  // namespace tessaly
