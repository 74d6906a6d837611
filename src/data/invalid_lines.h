// Data lines that cannot be read at all: `Invalid lines=` says whether the run halts at them or skips them.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Halts at invalid lines, or counts them and tells what a halt would have told.
class LineRefusal {
 public:
  LineRefusal(Analysis& analysis, Console& console) : analysis_(analysis), console_(console) {}

  bool Skips() const { return analysis_.Settings.InvalidLinesOption != InvalidLines::Halt; }
  /// Refuses the line at hand; `explanation` is told ahead of the failure. Throws `Halt{failure}` unless lines are
  /// skipped.
  void Refuse(FailureCode failure, const std::vector<std::string>& explanation = {});

 private:
  Analysis& analysis_;
  Console& console_;
  std::set<FailureCode> told_;
};

}  // namespace tessaly
