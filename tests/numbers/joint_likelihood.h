// A second way to the estimates: Newton-Raphson on all likelihood equations at once, in double precision.
#pragma once

#include <vector>

#include "fixture/design.h"

namespace tessaly {

/// How the ratings of a design are to be understood. Vectors are by facet.
struct LikelihoodProblem {
  std::vector<int> Counts;
  std::vector<double> Signs;
  std::vector<bool> Centered;
  /// Facets whose elements all stand at 0.
  std::vector<bool> Dummy;
  int Top = 1;
  /// The facet whose elements have thresholds of their own; -1 for none.
  int OwnSteps = -1;
  double Xtreme = 0.3;
  std::vector<Rating> Ratings;
  /// By facet and element; a rating's weight is its replication times those of its elements.
  std::vector<std::vector<double>> Weights;

  /// Facet 1 positive and not centered, the others the opposite.
  LikelihoodProblem(const Design& design, int top);
};

struct SolvedElement {
  /// A zero or perfect score: measured, but its ratings tell nothing about others.
  bool Extreme = false;
  double Measure = 0;
  double StandardError = 0;
  double Infit = 1;
  double InfitZ = 0;
  double Outfit = 1;
  double OutfitZ = 0;
};

struct LikelihoodSolution {
  std::vector<std::vector<SolvedElement>> Elements;
  /// By element of `OwnSteps` (one row without): thresholds with mean 0.
  std::vector<std::vector<double>> Steps;
};

/// Measures, thresholds, and fit (Wright & Masters 1982, chapter 5) of a problem in which each scale has all categories
/// observed. Elements with extreme scores are measured behind the others, `Xtreme` score points inside the range.
LikelihoodSolution SolveJointLikelihood(const LikelihoodProblem& problem);

}  // namespace tessaly
