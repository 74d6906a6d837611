// Point-biserial correlations: an element's responses against the mean responses of the elements it meets.
#pragma once

#include <vector>

#include "data/observation_pass.h"
#include "data/observation_store.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// For `Pt-biserial=` Y and I. Works on raw responses, before any estimate: call both passes between the data and the
/// estimation. A request to finish ends a pass at once and stands.
class PointBiserial {
 public:
  PointBiserial(Analysis& analysis, ObservationStore& store, RunControl& control, Console& console);

  /// First pass: counts and scores of all elements.
  void CountsForCorrelation();
  /// Second pass: `Fit[...].Correlation` of all elements. Setting Y leaves the observation at hand out of the other
  /// element's mean, setting I leaves it in. 0 where nothing varies. Call after `CountsForCorrelation`.
  void Correlate();

 private:
  struct Totals {
    double ObservedCount = 0;
    double ObservedScore = 0;
  };
  /// Weighted sums over pairs of an element's response x and another element's mean y. In double: spreads are small
  /// differences of large sums.
  struct PairSums {
    double N = 0;
    double X = 0;
    double XX = 0;
    double Y = 0;
    double YY = 0;
    double XY = 0;
  };

  bool MarkFacets();
  void ListElements(const Observation& obs);
  void AddPairs(const Observation& obs);
  void AddPair(PairSums& sums, double x, const Totals& partner, double w) const;
  float Correlation(const PairSums& sums) const;

  Analysis& analysis_;
  ObservationStore& store_;
  RunControl& control_;
  Console& console_;
  Table<ElementIndex, Totals> totals_;
  Table<ElementIndex, PairSums> sums_;
  /// By position: its facet has at least two elements in the data.
  std::vector<bool> inCorrelation_;
  /// Elements of the observation at hand that take part.
  std::vector<const ObservedElement*> listed_;
};

}  // namespace tessaly
