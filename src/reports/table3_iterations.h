// Table 3: the course of the iterations.
#pragma once

#include <string>

#include "estimate/iteration_summary.h"
#include "reports/report_writer.h"
#include "reports/table_frame.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Shows each iteration on the screen, and with `Write=Y` writes all its lines into the report.
class IterationTable : public IterationListener {
 public:
  IterationTable(const Analysis& analysis, ReportWriter& report, Console& console)
      : analysis_(analysis), report_(report), console_(console), frame_(report, analysis.Settings, console) {}

  void EstimationStarted() override;
  void IterationStarted(std::int32_t iteration) override;
  void StepsUpdated(const LargestResiduals& largest) override;
  void FacetUpdated(FacetNumber facet, const RunningMoments& measures) override;
  void Iterated(const IterationSummary& summary, const LargestResiduals& largest) override;
  void PriorityStarted(std::int32_t priority) override;
  void LimitReached(std::int32_t limit) override;
  void EstimationEnded() override;

 private:
  /// A detail of an iteration: on the screen unless only rows are shown there, in the report with `Write=Y`.
  void Detail(const std::string& line);
  void ReportDetail(const std::string& line);
  void WriteLargest(const LargestResiduals& largest);
  std::string ResidualLine(const ResidualDetail& detail) const;
  std::string ResidualLabel(const ResidualDetail& detail) const;

  const Analysis& analysis_;
  ReportWriter& report_;
  Console& console_;
  TableFrame frame_;
};

}  // namespace tessaly
