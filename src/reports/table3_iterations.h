// Table 3: the course of the iterations.
#pragma once

#include <string>

#include "estimate/iteration_summary.h"
#include "reports/iteration_log.h"
#include "reports/report_writer.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Shows each iteration on the screen, and with `Write=Y` writes all its lines into the report.
class IterationTable : public IterationListener {
 public:
  IterationTable(const Analysis& analysis, ReportWriter& report, Console& console)
      : analysis_(analysis), report_(report), log_(analysis.Settings, report, console) {}

  void EstimationStarted() override;
  void IterationStarted(std::int32_t iteration) override;
  void StepsUpdated(const LargestResiduals& largest) override;
  void FacetUpdated(FacetNumber facet, const RunningMoments& measures) override;
  void Iterated(const IterationSummary& summary, const LargestResiduals& largest) override;
  void PriorityStarted(std::int32_t priority) override;
  void LimitReached(std::int32_t limit) override;
  void EstimationEnded() override;

 private:
  void WriteLargest(const LargestResiduals& largest);
  std::string ResidualLabel(const ResidualDetail& detail) const;

  const Analysis& analysis_;
  ReportWriter& report_;
  IterationLog log_;
};

}  // namespace tessaly
