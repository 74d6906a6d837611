// What a joint maximum-likelihood pass accumulates: the inner loop of the estimation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "data/observation_block.h"
#include "data/observation_pass.h"
#include "estimate/carried_sums.h"
#include "model/response_kernel.h"
#include "model/score_block.h"
#include "state/elements.h"
#include "state/scales.h"

namespace tessaly {

/// Observations on their way through a joint maximum-likelihood pass.
struct JmleBlock {
  JmleBlock(std::size_t positions, const ScaleTables& scales) : Observations(positions), Scores(scales) {}

  ObservationBlock Observations;
  /// Of the rating scale observations that take part, in their order.
  ScoreBlock Scores;
  bool Evaluated = false;
};

/// Expected scores, information and expected category counts at the present estimates. Observations are evaluated side
/// by side, where and when it suits, and added in the order in which they came.
class JmleSums {
 public:
  /// `probe` is the shift of the measure (logit) at which the score curve is met a second time; 0 for none
  /// (Newton-Raphson).
  JmleSums(float probe, ResponseKernel& kernel, Table<ElementIndex, EstimationSums>& sums, ScaleTables& scales);

  JmleBlock MakeBlock(std::size_t positions) const { return {positions, scales_}; }
  ScoreEvaluator MakeEvaluator() const;
  /// Does nothing to what is evaluated already.
  static void Evaluate(JmleBlock& block, ScoreEvaluator& evaluator);
  /// Adds the evaluated observations of `block`.
  void Add(const JmleBlock& block);
  /// Call once, after the last block.
  void Finish() { carried_.Finish(); }

 private:
  /// Results of one observation: expected category at the measure and at the probe, information.
  struct Scores {
    float Expected;
    float Probed;
    float Variance;
  };

  void AddScored(const JmleBlock& block, std::size_t at, std::size_t place);
  void AddUnscored(const ObservationBlock& block, std::size_t at);
  void AddToElements(const ObservationBlock& block, std::size_t at, const Scores& scores);
  void AddDiscrimination(const CellFacts& cell, float weight);
  std::int32_t LastInVariance(const CellFacts& cell) const;
  void Prefetch(const ObservationBlock& block, std::size_t at) const;

  float probe_;
  ResponseKernel& kernel_;
  Table<ElementIndex, EstimationSums>& sums_;
  ScaleTables& scales_;
  CarriedSums<ElementIndex, EstimationSums, &EstimationSums::Information> carried_;
};

/// Adds all observations of `pass` to `sums`, on two processors if that is worthwhile. `look` sees each block when it
/// has been read.
void SumPass(ObservationPass& pass, JmleSums& sums, std::function<void(const ObservationBlock&)> look = {});

}  // namespace tessaly
