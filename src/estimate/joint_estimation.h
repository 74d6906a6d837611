// Measures by a recount, PROX and joint maximum likelihood.
#pragma once

#include <cstdint>
#include <string>

#include "data/observation_pass.h"
#include "data/observation_store.h"
#include "estimate/element_step.h"
#include "estimate/iteration_summary.h"
#include "estimate/subset_connection.h"
#include "estimate/update_facet.h"
#include "model/response_kernel.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Estimates one logit measure for each element and the structure of each scale: a recount pass that finds totals and
/// extreme scores, PROX passes for starting values, then joint maximum likelihood (JMLE) passes until the criteria of
/// `Convergence=` are met (Wright & Masters 1982). Priorities run one after the other.
class JointEstimation {
 public:
  JointEstimation(Analysis& analysis, ObservationStore& store, ResponseKernel& kernel, RunControl& control,
                  Console& console, IterationListener& listener);

  /// Runs to the end. Throws `Halt{AllExtreme}` when no observation is left, `Stopped` when the user leaves.
  void Run();

 private:
  void RunPriority(std::int32_t priority, std::int32_t priorityChanges);
  void Iterate(std::int32_t priority, std::int32_t priorityChanges);
  void ClearSums();
  void AdvanceStage();
  bool ProxIsDone() const;
  void CheckConstraints();
  void ClearCategories();
  void RecountOrProxPass();
  void JmlePass();
  void ScanForSubsets(const ObservationBlock& block, ObservationView& view);
  void KeepFirstTotals();
  void UpdateFacets(std::int32_t priority);
  void AdaptDamping();
  StepRule Rule() const;
  [[noreturn]] void NothingLeft() const;

  bool GoOn();
  bool CriteriaAskForMore() const;
  /// Nothing moves any more, whatever the criteria are.
  bool AtRest() const;
  void TellRest() const;
  bool WithinFirstIterations() const;

  Analysis& analysis_;
  ObservationStore& store_;
  ResponseKernel& kernel_;
  RunControl& control_;
  Console& console_;
  IterationListener& listener_;

  Table<ElementIndex, EstimationSums> sums_;
  IterationSummary summary_;
  LargestResiduals largest_;
  UpdateTrace trace_;
  SubsetConnection subsets_;
  bool recount_ = true;
  bool firstPass_ = true;
  bool dataSeen_ = false;
  /// Once is enough: later priorities count their own facets only.
  bool constraintsChecked_ = false;
  float curveProbe_ = 0.5F;
  /// Copy of the step size for one iteration, so that a request of the user changes only the next.
  float newtonStepNow_ = 0;
  float previousActiveChange_ = 0;
  double previousScoreResidual_ = 0;
};

}  // namespace tessaly
