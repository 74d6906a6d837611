// What a joint maximum-likelihood pass accumulates: the inner loop of the estimation.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "data/observation_pass.h"
#include "model/response_kernel.h"
#include "model/score_block.h"
#include "state/elements.h"
#include "state/scales.h"

namespace tessaly {

/// Expected scores, information and expected category counts at the present estimates. Observations are gathered,
/// evaluated together, and added in the order in which they came.
class JmleSums {
 public:
  /// `probe` is the shift of the measure (logit) at which the score curve is met a second time; 0 for none
  /// (Newton-Raphson).
  JmleSums(float probe, ResponseKernel& kernel, Table<ElementIndex, EstimationSums>& sums, ScaleTables& scales);

  /// Takes an observation that takes part.
  void Add(const Observation& obs);
  /// Adds what is still gathered: call once, after the last observation.
  void Finish() { AddGathered(); }

 private:
  /// An element that collects an observation.
  struct Collector {
    ElementIndex Element;
    bool Negative;
  };
  /// What is needed of a gathered observation besides its scores.
  struct Gathered {
    ScaleNumber Scale;
    std::int32_t Top;
    float Weight;
    bool IntoCategories;
    /// Behind its last collector.
    std::uint32_t End;
  };
  /// Results of one observation: expected category at the measure and at the probe, information.
  struct Scores {
    float Expected;
    float Probed;
    float Variance;
  };

  void Gather(const Observation& obs);
  void AddGathered();
  void AddToCategories(std::size_t at);
  void AddAtOnce(const Observation& obs);
  void AddToElement(const Collector& collector, const Scores& scores, std::int32_t top, float weight);
  void AddDiscrimination(const Observation& obs);
  std::int32_t LastInVariance(const Observation& obs) const;

  float probe_;
  ResponseKernel& kernel_;
  Table<ElementIndex, EstimationSums>& sums_;
  ScaleTables& scales_;
  ScoreBlock block_;
  std::array<Gathered, ScoreBlock::kCapacity> gathered_;
  std::vector<Collector> collectors_;
};

}  // namespace tessaly
