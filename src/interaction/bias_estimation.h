// Bias terms: which there are, and their sizes.
#pragma once

#include <string_view>

#include "data/observation_store.h"
#include "estimate/iteration_summary.h"
#include "interaction/bias_step.h"
#include "interaction/bias_terms.h"
#include "interaction/observation_terms.h"
#include "model/response_kernel.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Finds the terms of a bias run and estimates one size for each, all measures and steps held, so that its expected
/// score meets its observed one.
class BiasEstimation {
 public:
  BiasEstimation(BiasTerms& terms, ObservationTerms& finder, const Analysis& analysis, ObservationStore& store,
                 ResponseKernel& kernel, RunControl& control, Console& console, IterationListener& listener);

  /// Whether there is a term to report; if not, it is told why. A request to finish ends the iterations.
  bool Run();

 private:
  /// What a pass reads of a term and adds to it.
  struct TermWork {
    /// Sum of w E.
    double ExpectedSum = 0;
    float Size = 0;
    bool Active = false;
  };
  /// What the steps of a term know.
  struct TermState {
    BiasBracket Bracket;
    /// Sums of w times the top category and, at the first pass, of w V.
    float PossibleSum = 0;
    float VarianceSum = 0;
    float SmallestWeight = 0;
  };

  bool FindTerms();
  bool FirstPass();
  void AddFirst(const Observation& obs, TermIndex term);
  void FirstSteps();
  void AdjustExtremeScore(TermIndex term);
  void ExpectedScores();
  void NextSteps();
  void StartRound();
  void Take(TermIndex term, const BiasStep& step);
  void EndRound();
  void Tell(std::string_view text);

  BiasTerms& terms_;
  ObservationTerms& finder_;
  const Analysis& analysis_;
  ObservationStore& store_;
  ResponseKernel& kernel_;
  RunControl& control_;
  Console& console_;
  IterationListener& listener_;
  BiasStepRule rule_;
  Table<TermIndex, TermWork> work_;
  Table<TermIndex, TermState> state_;
  IterationSummary summary_;
  LargestResiduals largest_;
  RunningMoments sizes_;
};

}  // namespace tessaly
