#include "estimate/data_fit.h"

#include <algorithm>

namespace tessaly {

void DataFit::AddToSummary(const Observation& obs, const ObservationFit& fit) {
  const double w = static_cast<double>(obs.ObsWeight);
  Summary[Response].AddWeighted(obs.ObsResponse, w);
  Summary[Reported].AddWeighted(fit.ReportedResponse(obs), w);
  Summary[Expected].AddWeighted(static_cast<double>(fit.ReportedExpectation()), w);
  Summary[Residual].AddWeighted(static_cast<double>(fit.Moments.ResponseResidual), w);
  Summary[StandardizedResidual].AddWeighted(static_cast<double>(fit.StandardizedResidual), w);
  if (obs.ObsWeight != 1) WeightedData = true;
  LowestMeasure = std::min(LowestMeasure, obs.MeasureSum);
  HighestMeasure = std::max(HighestMeasure, obs.MeasureSum);
}

}  // namespace tessaly
