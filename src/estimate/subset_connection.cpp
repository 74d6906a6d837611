#include "estimate/subset_connection.h"

#include <map>
#include <string>

#include "estimate/consolidate_subsets.h"
#include "support/number_text.h"

namespace tessaly {

SubsetConnection::SubsetConnection(Analysis& analysis, RunControl& control, Console& console)
    : analysis_(analysis), control_(control), console_(console) {
  analysis_.Subsets = {};
  if (analysis_.Settings.SubsetDetection != SubsetReport::Off) detector_.emplace(analysis_);
}

void SubsetConnection::StartPass() {
  changed_ = false;
  if (!Active()) return;
  console_.ShowMessage("Validating subset connection... Subsets=No to bypass, Ctrl+F to skip");
  detector_->UnassignedPoints = 0;
  detector_->SubsetChanged = false;
}

void SubsetConnection::ScanObservation(const Observation& obs) {
  detector_->ScanObservation(obs);
  if (!control_.FastForward) return;
  control_.FastForward = false;
  console_.ShowProgress("#", false);
  analysis_.SubsetWarning = kSubsetsNotVerified;
  detector_.reset();
}

void SubsetConnection::EndPass() {
  if (!Active()) return;
  changed_ = detector_->SubsetChanged;
  subsetCount_ = detector_->Lists().CountSubsets();
  if (subsetCount_ > 1 || detector_->UnassignedPoints > 0) Consolidate();
  const bool disjoint = subsetCount_ > 1 || detector_->UnassignedPoints > 0;
  if (!disjoint) changed_ = false;
  analysis_.SubsetWarning = Verdict();
  if (changed_ && !control_.FastForward) return;
  if (disjoint) NumberSubsets();
  console_.ShowMessage(analysis_.SubsetWarning);
  detector_.reset();
}

void SubsetConnection::Consolidate() {
  std::string message = "Consolidating" + GeneralText(subsetCount_) + " subsets";
  if (detector_->UnassignedPoints > 0)
    message += " and" + GeneralText(detector_->UnassignedPoints) + " unassigned data points";
  console_.ShowMessage(message);
  console_.ShowProgress(">", false);
  if (ConsolidateSubsets(analysis_.Facets, analysis_.Elements, detector_->Lists())) changed_ = true;
  console_.ShowProgress("<", true);
  subsetCount_ = detector_->Lists().CountSubsets();
}

std::string SubsetConnection::Verdict() const {
  const std::int64_t unassigned = detector_->UnassignedPoints;
  if (subsetCount_ <= 1 && unassigned == 0) return "Subset connection O.K.";
  std::string verdict = "Warning (6)! There may be" + GeneralText(subsetCount_) + " disjoint subsets";
  if (unassigned > 0) verdict += " and " + BareText(unassigned) + " data points not assigned to subsets";
  return verdict;
}

/// Subsets are numbered in the order in which the element table meets them.
void SubsetConnection::NumberSubsets() {
  SubsetLists& lists = detector_->Lists();
  SubsetTable& subsets = analysis_.Subsets;
  subsets.ElementSubsets.assign(analysis_.Elements.ElementCount(), {});
  std::map<SubsetNumber, std::int32_t> numbers;
  for (const ElementIndex element : subsets.ElementSubsets.all()) {
    for (const SubsetNumber root : lists.SubsetsOf(element)) {
      const auto [entry, isNew] = numbers.try_emplace(root, static_cast<std::int32_t>(numbers.size()) + 1);
      subsets.ElementSubsets[element].push_back(entry->second);
    }
  }
  subsets.SubsetCount = static_cast<std::int32_t>(numbers.size());
}

}  // namespace tessaly
