#include "estimate/prox_sums.h"

namespace tessaly {

void ObservedTotals::Add(const Observation& obs) {
  const float w = obs.ObsWeight;
  if (obs.Status == ReadStatus::Usable) {
    dataSeen_ = true;
    scales_.CategoryCount(obs.CurrentScale, obs.ObsOrdinal) += static_cast<double>(w);
  }
  const float possible = w * static_cast<float>(obs.CurrentTop);
  const float score = w * static_cast<float>(obs.ObsOrdinal);
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    const ObservedElement& own = obs.Elements[at];
    if (!own.Collects(obs.Status)) continue;
    const std::int32_t raw = own.Negative ? obs.CurrentTop - obs.ObsResponse : obs.ObsResponse;
    ElementRecord& record = elements_.ElementStats[own.CurrentElement];
    record.ObservedCount += static_cast<double>(w);
    if (w != 0 && (record.SmallestWeight == 0 || record.SmallestWeight > w)) record.SmallestWeight = w;
    record.RawScore += static_cast<double>(w * static_cast<float>(raw));
    record.PossibleScore += static_cast<double>(possible);
    record.ObservedScore += static_cast<double>(own.Negative ? possible - score : score);
  }
}

void ProxSums::Add(const Observation& obs) {
  if (obs.CurrentType == ModelType::Poisson) {
    poissonSeen_ = true;
    return;
  }
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    const ObservedElement& own = obs.Elements[at];
    if (!own.Collects(obs.Status)) continue;
    const float others = obs.MeasureSum - own.CurrentMeasure;
    const float z = others * obs.ObsWeight;
    EstimationSums& sums = sums_[own.CurrentElement];
    sums.ExpectedScore += static_cast<double>(z);
    sums.Information += z * others;
    sums.ProxWeight += obs.ObsWeight;
  }
}

}  // namespace tessaly
