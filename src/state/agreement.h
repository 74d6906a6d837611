// How often raters agree.
#pragma once

#include <cstddef>
#include <vector>

#include "state/indexes.h"

namespace tessaly {

/// Agreement of one rater with all others, in percent of the rater's opportunities. 0 without opportunities.
struct RaterAgreement {
  float RaterExact = 0;
  float RaterExpected = 0;
};

/// Agreement of the elements of one facet. A pair of observations counts half the sum of their weights.
struct Agreement {
  /// The rater facet; 0 if agreement was not computed.
  FacetNumber Facet{0};
  double AgreementOpportunities = 0;
  double ExactAgreements = 0;
  /// As the model expects them at the estimates.
  double ExpectedAgreements = 0;
  /// Of each rater, from `FirstRater` on.
  ElementIndex FirstRater{0};
  std::vector<RaterAgreement> Raters;

  bool Computed() const { return Facet.value > 0; }
  const RaterAgreement& Of(ElementIndex rater) const {
    return Raters[static_cast<std::size_t>(rater.value - FirstRater.value)];
  }
};

}  // namespace tessaly
