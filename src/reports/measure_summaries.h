// What the foot of a measurement table summarizes.
#pragma once

#include <vector>

#include "estimate/moments.h"
#include "state/elements.h"

namespace tessaly {

/// Moments over the measures of elements, in logits.
struct MeasureSummary {
  RunningMoments Measure;
  RunningMoments StandardError;
  RunningMoments InfitMeanSquare;
  RunningMoments InfitZStd;
  RunningMoments OutfitMeanSquare;
  RunningMoments OutfitZStd;
  /// q = 1 / error variance, and q times the measure and its square.
  RunningMoments Precision;
  RunningMoments WeightedMeasure;
  RunningMoments WeightedSquare;
  RunningMoments ErrorVariance;
  /// The measures one by one.
  struct Place {
    double Measure;
    double Error;
  };
  std::vector<Place> Places;

  void Add(float measure, const ElementFit& fit);
  double Count() const { return Measure.N; }
  double Variance() const { return Measure.StandardDeviation() * Measure.StandardDeviation(); }
  /// Variance as a sample of a population.
  double SampleVariance() const { return Variance() * Count() / (Count() - 1); }
};

/// Sum of the squared deviations of the measures from their weighted mean, times their weights: `precision`,
/// `weightedMeasure` and `weightedSquare` hold w, w m and w m^2. 0 without weight.
double WeightedDeviations(const RunningMoments& precision, const RunningMoments& weightedMeasure,
                          const RunningMoments& weightedSquare, float smallest);

/// Moments over the rows of one table.
struct RowSummaries {
  /// Every element with a count: what its row shows.
  struct {
    RunningMoments Score;
    RunningMoments Count;
    RunningMoments Correlation;
    RunningMoments Average;
    RunningMoments FairAverage;
  } Rows;
  /// Elements of active status, and these with the extreme ones.
  MeasureSummary Active;
  MeasureSummary Wide;
};

}  // namespace tessaly
