// How one observation fits its expectation.
#pragma once

#include "data/observation_pass.h"
#include "model/response_kernel.h"
#include "model/response_moments.h"
#include "state/scales.h"

namespace tessaly {

/// Fit of one observation.
struct ObservationFit {
  ResponseMoments Moments;
  /// Standardized residual z, held at 9 in size; 0 unless all elements are measurable.
  float StandardizedResidual = 0;
  /// Raw category of ordinal 0 where the scale was renumbered, else 0.
  std::int32_t ReportingOffset = 0;

  /// Expected and observed response as reports show them: on the raw categories' count.
  float ReportedExpectation() const { return Moments.ExpectedResponse + static_cast<float>(ReportingOffset); }
  std::int32_t ReportedResponse(const Observation& obs) const { return obs.ObsOrdinal + ReportingOffset; }
};

/// Standardized residual z of a response, (x - E) / square root of V, held at 9 in size.
float HeldResidual(const ResponseMoments& moments);

/// Fit of `obs` where the expected category is `expected` and those of its scale have these probabilities.
ObservationFit FitOf(const Observation& obs, float expected, const Probabilities& probabilities,
                     const ScaleTables& scales);

/// Fit of `obs` at `measure` (logit, net). Leaves the category probabilities there in `kernel`.
ObservationFit FitAt(const Observation& obs, float measure, const ScaleTables& scales, ResponseKernel& kernel);

/// Adds an observation whose elements are all measurable to the expected counts, information and statistics of the
/// categories of its scale.
void AddToCategories(const Observation& obs, const ObservationFit& fit, const Probabilities& probabilities,
                     float smallest, ScaleTables& scales);

}  // namespace tessaly
