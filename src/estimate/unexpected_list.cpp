#include "estimate/unexpected_list.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "support/polled_sort.h"

namespace tessaly {

bool UnexpectedList::Worse(const UnexpectedResponse& a, const UnexpectedResponse& b) {
  return std::tuple(-std::fabs(a.ZScore), a.ZScore < 0, a.ObservationIndex) <
         std::tuple(-std::fabs(b.ZScore), b.ZScore < 0, b.ObservationIndex);
}

void UnexpectedList::AddUnexpected(const Observation& obs, const ObservationFit& fit) {
  if (most_ == 0 || !(std::fabs(fit.StandardizedResidual) >= least_)) return;
  UnexpectedResponse response;
  response.Category = obs.ObsResponse;
  response.Score = fit.ReportedResponse(obs);
  response.Expected = fit.ReportedExpectation();
  response.ZScore = fit.StandardizedResidual;
  response.ObservationIndex = obs.ObservationIndex;
  if (heap_.size() == most_) {
    ++droppedCount_;
    if (!Worse(response, heap_.front())) return;
    std::pop_heap(heap_.begin(), heap_.end(), Worse);
    // The memory of the one that goes serves the one that comes.
    response.Elements = std::move(heap_.back().Elements);
    heap_.pop_back();
  }
  response.Elements.clear();
  for (const ObservedElement& own : obs.Elements) response.Elements.push_back(own.CurrentElement);
  heap_.push_back(std::move(response));
  std::push_heap(heap_.begin(), heap_.end(), Worse);
}

std::vector<UnexpectedResponse> UnexpectedList::Sorted(RunControl& control) const {
  std::vector<UnexpectedResponse> sorted = heap_;
  PolledSort(sorted, Worse, [&] { control.Poll(); });
  return sorted;
}

UnexpectedList CollectUnexpected(float least, std::int32_t most, const Analysis& analysis, ObservationStore& store,
                                 ResponseKernel& kernel, RunControl& control, Console& console) {
  console.ShowMessage(" recomputing residuals ....");
  UnexpectedList list(least, most);
  for (const Observation& obs : ObservationPass(store, analysis, control, console)) {
    if (obs.Status == ReadStatus::Usable) list.AddUnexpected(obs, FitAt(obs, obs.MeasureSum, analysis.Scales, kernel));
  }
  return list;
}

}  // namespace tessaly
