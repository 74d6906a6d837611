// Table 9: the course of the iterations of a bias run.
#pragma once

#include <cstdint>
#include <string>

#include "estimate/iteration_summary.h"
#include "interaction/bias_terms.h"
#include "reports/iteration_log.h"
#include "reports/report_writer.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Shows each iteration on the screen, and with `Write=Y` writes all its lines into the report.
class BiasIterationTable : public IterationListener {
 public:
  /// Writes the title: `run` is the number of the model statement that asks for it, from 1.
  BiasIterationTable(std::int32_t run, const BiasTerms& terms, const Analysis& analysis, ReportWriter& report,
                     Console& console);

  void EstimationStarted() override;
  void IterationStarted(std::int32_t iteration) override;
  void FacetUpdated(FacetNumber facet, const RunningMoments& sizes) override;
  void Iterated(const IterationSummary& summary, const LargestResiduals& largest) override;
  void EstimationEnded() override { log_.EndTable(); }

 private:
  std::string TermLabel(TermIndex term) const;

  const BiasTerms& terms_;
  const Analysis& analysis_;
  IterationLog log_;
};

}  // namespace tessaly
