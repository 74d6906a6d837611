// One step of the estimation of one bias term.
#pragma once

#include <cstdint>

namespace tessaly {

/// A size (logit) that was tried and the score expected there.
struct BiasGuess {
  float Size = 0;
  float Expected = 0;
  /// Some size was tried.
  bool Known = false;

  bool IsAt(float size) const { return Known && Size == size; }
};

/// The best guesses so far: `Low` expects less than was observed, `High` as much or more.
struct BiasBracket {
  BiasGuess Low;
  BiasGuess High;
  /// Sizes tried.
  std::int32_t Tried = 0;
};

/// What limits the steps.
struct BiasStepRule {
  /// Criteria of convergence: score points, logit.
  float Score = 0.01F;
  float Size = 0.001F;
  /// Largest size, logit.
  float Limit = 80;
  float SmallestNumber = 0;
};

/// What a term aims at: its observed score, and the highest possible one.
struct BiasAim {
  float Observed = 0;
  float Possible = 0;
};

/// Where a step leads.
struct BiasStep {
  /// The new size, logit.
  float Size = 0;
  /// Observed less expected score at the size tried.
  double Residual = 0;
  /// The criteria are met, or no size comes nearer to the observed score.
  bool Settled = false;
};

/// The step of a term that expects `expected` at `size`, the first one by Newton-Raphson with the variance there, and
/// its first guess.
BiasStep FirstBiasStep(BiasAim aim, double expected, float variance, const BiasStepRule& rule, BiasBracket& bracket);

/// Every further step: interpolation on the logit of the score, ln(score / (possible - score)), between the guesses or
/// through the last two on one side. Takes the size tried into `bracket`. Where the interpolation turns in circles, and
/// from the 26th step on, the bracket is halved instead, so that every term settles.
BiasStep NextBiasStep(BiasAim aim, double expected, float size, const BiasStepRule& rule, BiasBracket& bracket);

}  // namespace tessaly
