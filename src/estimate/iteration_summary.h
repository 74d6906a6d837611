// What one iteration tells.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

#include "estimate/moments.h"
#include "state/indexes.h"
#include "state/models.h"
#include "state/run_control.h"

namespace tessaly {

/// Whether `value` is larger in size than `largest`, so that the first of equals is kept.
template <class T>
bool LargerInSize(T value, T largest) {
  return std::fabs(value) > std::fabs(largest);
}

/// Signed values of largest size that an iteration met.
struct IterationSummary {
  std::int32_t Iteration = 0;
  tessaly::Phase Phase = Phase::Recount;
  /// The pass was followed by a change that makes all counts start again.
  bool Recount = false;
  /// Change among elements, logit.
  float MaxLogitChange = 0;
  /// The same among elements whose scores are not extreme.
  float MaxActiveChange = 0;
  /// Score residual among elements, score points.
  double MaxScoreResidual = 0;
  /// Residual / possible score.
  float MaxResidualFraction = 0;
  /// Change among steps, logit.
  float MaxCategoryChange = 0;
  /// Count residual among categories.
  double MaxCategoryResidual = 0;
  /// Count residual / observed count.
  float MaxCategoryFraction = 0;
  /// Bias terms that have not met the criteria.
  std::int32_t ActiveCells = 0;
};

/// Who or what a largest residual belongs to.
struct ResidualDetail {
  enum class Kind { Element, Step, BinomialDiscrimination, PoissonDiscrimination, BiasTerm };
  Kind What = Kind::Element;
  FacetNumber Facet{0};
  ElementIndex Element{0};
  TermIndex Term{0};
  ScaleNumber Scale{0};
  std::int32_t Category = 0;
  double Observed = 0;
  double Expected = 0;
  double Residual = 0;
  float Fraction = 0;
  /// Measure, step or bias size behind the change, and the change; logit.
  float Value = 0;
  float Change = 0;
  /// Score figures are only there in JMLE.
  bool WithScores = false;
};

/// The details of the three largest values of a round of updates.
struct LargestResiduals {
  std::optional<ResidualDetail> Residual;
  std::optional<ResidualDetail> Change;
  std::optional<ResidualDetail> Fraction;
};

/// Keeps of `detail`, which is of an element or a bias term, what is larger in size than all before it.
void KeepLargest(const ResidualDetail& detail, IterationSummary& summary, LargestResiduals& largest);

/// Few analyses need so many iterations: the user is told what ends those that never converge.
constexpr std::int32_t kManyIterations = 1000;

/// Whether an iteration is told where each is as a rule. Behind `kManyIterations` one of so many is: an analysis that
/// goes on for a night must not fill the disk.
constexpr bool IsTold(std::int32_t iteration) {
  return iteration <= kManyIterations || iteration % kManyIterations == 0;
}

/// Who watches the iterations. The default watches nothing.
class IterationListener {
 public:
  virtual ~IterationListener() = default;
  virtual void EstimationStarted() {}
  virtual void IterationStarted(std::int32_t /*iteration*/) {}
  virtual void StepsUpdated(const LargestResiduals& /*largest*/) {}
  /// Moments of the measured elements of a facet, or (facet 0) of the sizes of the bias terms; logit.
  virtual void FacetUpdated(FacetNumber /*facet*/, const RunningMoments& /*measures*/) {}
  virtual void Iterated(const IterationSummary& /*summary*/, const LargestResiduals& /*largest*/) {}
  /// The facets of another priority follow.
  virtual void PriorityStarted(std::int32_t /*priority*/) {}
  virtual void LimitReached(std::int32_t /*limit*/) {}
  virtual void EstimationEnded() {}
};

}  // namespace tessaly
