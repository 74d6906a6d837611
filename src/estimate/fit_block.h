// Observations on their way through the fit pass: all that each needs by itself, before anything is added up.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "data/observation_block.h"
#include "data/observation_pass.h"
#include "estimate/observation_fit.h"
#include "model/response_kernel.h"
#include "model/score_block.h"

namespace tessaly {

/// Neighbouring observations and how each fits. Results stand only for those that take part.
struct FitBlock {
  struct Row {
    ObservationFit Fit;
    LogOdds Odds;
    /// ln P(x); if all elements are measurable.
    double LogProbability = 0;
  };

  FitBlock(std::size_t positions, const ScaleTables& scales)
      : Observations(positions), Scores(scales), FairScores(positions * ObservationBlock::kCapacity) {}

  float* FairRow(std::size_t at) { return FairScores.data() + at * Observations.Positions; }
  const float* FairRow(std::size_t at) const { return FairScores.data() + at * Observations.Positions; }

  ObservationBlock Observations;
  bool Evaluated = false;
  /// Of those that are evaluated side by side, and where in it each of these is.
  ScoreBlock Scores;
  std::array<std::uint16_t, ObservationBlock::kCapacity> Place;
  std::array<Row, ObservationBlock::kCapacity> Rows;
  /// By position of each observation: the score (raw categories) among average elements of the other facets, for
  /// elements that collect the observation.
  std::vector<float> FairScores;
};

/// Evaluates blocks. One for each thread.
class FitEvaluator {
 public:
  /// Expected category and category probabilities of an observation.
  struct Scores {
    float Expected;
    tessaly::Probabilities Probabilities;
  };

  /// Reads the tables of `analysis`, which may not change as long as it is in use.
  FitEvaluator(const Analysis& analysis, float hardwareExponent, FacetMeans means);

  /// Does nothing to what is evaluated already.
  void Evaluate(FitBlock& block);
  /// Scores of observation `at`, which takes part, of an evaluated block, until the next call.
  Scores ScoresOf(const FitBlock& block, std::size_t at);

 private:
  /// A fair score that is still to be evaluated.
  struct Waiting {
    std::size_t Observation;
    std::size_t Position;
    bool Negative;
  };

  void EvaluateScores(FitBlock& block);
  FitBlock::Row RowOf(const Observation& obs, const Scores& scores) const;
  void PutFairScores(FitBlock& block, std::size_t at, const Observation& obs);
  void EvaluateFairScores(FitBlock& block);

  const Analysis& analysis_;
  ResponseKernel kernel_;
  ScoreEvaluator evaluator_;
  ObservationView view_;
  std::vector<float> probabilities_;
  ScoreBlock fair_;
  std::array<Waiting, ScoreBlock::kCapacity> waiting_;
};

}  // namespace tessaly
