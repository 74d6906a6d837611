// The pass over the observations after the estimates have settled: how well the data fit.
#pragma once

#include <optional>
#include <utility>

#include "data/observation_store.h"
#include "estimate/carried_sums.h"
#include "estimate/cross_reference.h"
#include "estimate/data_fit.h"
#include "estimate/fit_block.h"
#include "estimate/measure_correlation.h"
#include "estimate/observation_fit.h"
#include "estimate/unexpected_list.h"
#include "model/response_kernel.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Sums of the fit pass for one element. y is the residual, z the standardized residual, V the variance.
struct FitSums {
  /// Sum of w V.
  float Information = 0;
  /// Sum of w times the kurtosis ratio.
  double Kurtosis = 0;
  /// Sum of w y y, and of w times its variance term.
  float ResidualSquares = 0;
  double ResidualVariance = 0;
  /// Sum of w z z.
  float ResidualSquaresZ = 0;
  /// Sum of w E.
  float Expected = 0;
  /// Sums of w S(x), w mean of S, w variance of S, with S the cumulated log-odds.
  float LogOddsObserved = 0;
  float LogOddsMean = 0;
  float LogOddsVariance = 0;
  float FairScoreSum = 0;
  /// Since the sums in single precision began anew.
  std::int32_t Additions = 0;

  FitSums& operator+=(const FitSums& other);
};

using CarriedFitSums = CarriedSums<ElementIndex, FitSums, &FitSums::Information, &FitSums::ResidualSquares,
                                   &FitSums::ResidualSquaresZ, &FitSums::Expected, &FitSums::LogOddsObserved,
                                   &FitSums::LogOddsMean, &FitSums::LogOddsVariance, &FitSums::FairScoreSum>;

/// Reads all observations once at the final estimates. Fills category statistics, expected counts and step information
/// of the scales, the facets' mean measures and label widths; then `Finish` turns the element sums into fit statistics.
class FitPass {
 public:
  FitPass(Analysis& analysis, ObservationStore& store, const ResponseKernel& kernel, RunControl& control,
          Console& console);

  void Run();
  /// Mean-squares, standardized values, discriminations, displacements (logit), standard errors (logit) and
  /// correlations with measures of all elements into `analysis.Elements.Fit`; point-biserial correlations stay there.
  /// Call once, after `Run`.
  void Finish();
  const tessaly::DataFit& Data() const { return data_; }
  /// The observations of Table 4.
  UnexpectedList Unexpected() && { return std::move(unexpected_); }
  /// What `Esubtotals=` asks for; nothing without it.
  const std::optional<ElementCrossReference>& CrossReference() const { return crossReference_; }

 private:
  void PrepareScaleTables();
  void PrepareFacets();
  void CountParameters();
  void Add(const FitBlock& block, FitEvaluator& evaluator, ObservationView& view);
  void AddToData(const Observation& obs, const FitBlock::Row& row, const Probabilities& probabilities);
  void AddToElements(const Observation& obs, const FitBlock::Row& row, const float* fairScores);
  void FinishElement(ElementIndex element);

  Analysis& analysis_;
  ObservationStore& store_;
  float hardwareExponent_;
  RunControl& control_;
  Console& console_;
  Table<ElementIndex, FitSums> sums_;
  CarriedFitSums carried_{sums_};
  Table<ElementIndex, CorrelationSums> correlations_;
  tessaly::DataFit data_;
  UnexpectedList unexpected_;
  std::optional<ElementCrossReference> crossReference_;
};

}  // namespace tessaly
