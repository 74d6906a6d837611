// Many observations of rating scales evaluated side by side: what the response kernel gives for each, several at once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "state/scales.h"

namespace tessaly {

/// Observations are put in one by one, evaluated together by a `ScoreEvaluator`, and read one by one.
class ScoreBlock {
 public:
  static constexpr std::size_t kCapacity = 256;

  explicit ScoreBlock(const ScaleTables& scales);

  bool Full() const { return size_ == kCapacity; }
  std::size_t Size() const { return size_; }
  void Clear();
  /// An observation of a rating scale (or dichotomy) of `top` 1 or more at net `measure` (logit). There must be room.
  void Put(ScaleNumber scale, std::int32_t top, float measure) {
    scale_[size_] = scale;
    top_[size_] = top;
    mixed_ = mixed_ || top != top_[0];
    measure_[size_++] = measure;
  }

  /// Results of observation `at`, from 0. Probability of category `k`, 0..top.
  float Probability(std::size_t at, std::int32_t k) const {
    return table_[static_cast<std::size_t>(k) * kCapacity + place_[at]];
  }
  float Expected(std::size_t at) const { return expected_[place_[at]]; }
  float Probed(std::size_t at) const { return probed_[place_[at]]; }
  /// `EstimationVariance`.
  float Variance(std::size_t at) const { return variance_[place_[at]]; }

 private:
  friend class ScoreEvaluator;
  using Singles = std::array<float, kCapacity>;
  using Places = std::array<std::uint16_t, kCapacity>;

  void PutInOrder();
  void Arrange();

  std::size_t size_ = 0;
  /// Of several tops.
  bool mixed_ = false;
  std::array<ScaleNumber, kCapacity> scale_;
  std::array<std::int32_t, kCapacity> top_;
  Singles measure_;
  /// Observations of one top stand together: the place of each, and the observation at each place. In the order of
  /// `Put` as long as all are of one top.
  Places place_;
  Places at_;
  /// By place.
  Singles expected_;
  Singles probed_;
  Singles variance_;
  /// By category, then place.
  std::vector<float> table_;
};

/// Which registers a `ScoreEvaluator` uses: the widest that the processor has, or those that every processor has.
enum class Registers { Widest, Plain };

/// Evaluates blocks. Every step of an observation is that of `ResponseKernel::ProbedProbabilities`, in the same order
/// and width, so that all figures have the same bits whatever stands beside it and however wide the processor's
/// registers are. One for each thread.
class ScoreEvaluator {
 public:
  /// Reads steps and anchors of `scales`, which may not change as long as it is in use. `probe` (logit): where, below
  /// its measure, the expected category of an observation is met a second time; 0 for nowhere.
  ScoreEvaluator(const ScaleTables& scales, float hardwareExponent, float probe,
                 Registers registers = Registers::Widest);

  void Evaluate(ScoreBlock& block);

 private:
  void FillSteps(const ScoreBlock& block, std::size_t first, std::size_t end, std::int32_t top);

  const ScaleTables& scales_;
  float hardwareExponent_;
  float probe_;
  Registers registers_;
  /// By place. The scale whose thresholds stand there.
  std::array<ScaleNumber, ScoreBlock::kCapacity> filled_;
  ScoreBlock::Singles measure_;
  ScoreBlock::Singles probedMeasure_;
  /// By category, then place: thresholds, and 1 where a category is kept though unobserved; the table at the probe.
  std::vector<float> step_;
  std::vector<float> kept_;
  std::vector<float> probedTable_;
};

}  // namespace tessaly
