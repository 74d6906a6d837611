// What a joint maximum-likelihood pass accumulates: the inner loop of the estimation.
#pragma once

#include "data/observation_pass.h"
#include "model/response_kernel.h"
#include "state/elements.h"
#include "state/scales.h"

namespace tessaly {

/// Expected scores, information and expected category counts at the present estimates.
class JmleSums {
 public:
  /// `probe` is the shift of the measure (logit) at which the score curve is met a second time; 0 for none
  /// (Newton-Raphson).
  JmleSums(float probe, ResponseKernel& kernel, Table<ElementIndex, EstimationSums>& sums, ScaleTables& scales)
      : probe_(probe), kernel_(kernel), sums_(sums), scales_(scales) {}

  void Add(const Observation& obs);

 private:
  void AddCategories(const Observation& obs);
  void AddDiscrimination(const Observation& obs);
  std::int32_t LastInVariance(const Observation& obs) const;

  float probe_;
  ResponseKernel& kernel_;
  Table<ElementIndex, EstimationSums>& sums_;
  ScaleTables& scales_;
};

}  // namespace tessaly
