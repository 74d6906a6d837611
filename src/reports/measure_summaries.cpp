#include "reports/measure_summaries.h"

namespace tessaly {

void MeasureSummary::Add(float measure, const ElementFit& fit) {
  const double m = static_cast<double>(measure);
  const double s = static_cast<double>(fit.StandardError);
  const double q = 1 / SafeFloor64(s * s);
  Measure.Add(m);
  StandardError.Add(s);
  InfitMeanSquare.Add(static_cast<double>(fit.InfitMeanSquare));
  InfitZStd.Add(static_cast<double>(fit.InfitZStd));
  OutfitMeanSquare.Add(static_cast<double>(fit.OutfitMeanSquare));
  OutfitZStd.Add(static_cast<double>(fit.OutfitZStd));
  Precision.Add(q);
  WeightedMeasure.Add(q * m);
  WeightedSquare.Add(q * m * m);
  ErrorVariance.Add(s * s);
  Places.push_back({m, s});
}

double WeightedDeviations(const RunningMoments& precision, const RunningMoments& weightedMeasure,
                          const RunningMoments& weightedSquare, float smallest) {
  if (!(precision.Mean > static_cast<double>(smallest))) return 0;
  return (weightedSquare.Mean - weightedMeasure.Mean * weightedMeasure.Mean / precision.Mean) * precision.N;
}

}  // namespace tessaly
