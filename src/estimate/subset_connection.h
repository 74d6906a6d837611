// Whether the data connect all measures: detection during the passes of the estimation, and its verdict.
#pragma once

#include <optional>

#include "estimate/subset_detector.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Follows the passes of the estimation until the subsets no longer change. Changes no estimate. Leaves
/// `Analysis::SubsetWarning` and, for several subsets, `Analysis::Subsets`.
class SubsetConnection {
 public:
  SubsetConnection(Analysis& analysis, RunControl& control, Console& console);

  bool Active() const { return detector_.has_value(); }
  /// Whether the pass at hand changed anything: the estimation goes on as long as it does.
  bool Changed() const { return changed_; }

  void StartPass();
  /// Only while `Active`. A request to finish ends the detection and nothing else.
  void ScanObservation(const Observation& obs);
  void EndPass();

 private:
  void Consolidate();
  std::string Verdict() const;
  void NumberSubsets();

  Analysis& analysis_;
  RunControl& control_;
  Console& console_;
  std::optional<SubsetDetector> detector_;
  std::int32_t subsetCount_ = 0;
  bool changed_ = false;
};

}  // namespace tessaly
