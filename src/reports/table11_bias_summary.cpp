#include "reports/table11_bias_summary.h"

#include <string>

#include "reports/bias_heading.h"
#include "reports/data_moments.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kWeightWidth = 14;
constexpr int kBiasCountWidth = 11;

std::string CountLine(const DataFit& fit) {
  if (fit.WeightedData)
    return "Count of measurable responses (weighted)= " +
           std::string(TrimLeft(ZeroedNumber(fit.Weight(), kWeightWidth, 3)));
  return "Count of measurable responses           = " + FormatNumber(fit.Weight(), kBiasCountWidth, 0);
}

}  // namespace

void BiasSummaryTable(std::int32_t run, const BiasTerms& terms, const DataFit& main, const Settings& settings,
                      ReportWriter& report, Console& console) {
  TableFrame frame(report, settings, console);
  frame.StartTable("Table 11." + BareText(run) + "  Bias/Interaction Measurement Summary");
  WriteBiasHeading(terms, report);
  WriteDataMoments(terms.Fit, settings, report);
  report.WriteTableLine(CountLine(terms.Fit));
  const double all = VarianceOf(main, DataFit::Reported);
  const double residual = VarianceOf(main, DataFit::Residual);
  const double remaining = VarianceOf(terms.Fit, DataFit::Residual);
  report.WriteTableLine(VarianceLine("Raw-score variance of observations      ", all, all));
  report.WriteTableLine(VarianceLine("Variance explained by Rasch measures    ", all - residual, all));
  report.WriteTableLine(VarianceLine("Variance of residuals                   ", residual, all));
  report.WriteTableLine(VarianceLine("Variance explained by bias/interactions ", residual - remaining, all));
  report.WriteTableLine(VarianceLine("Variance remaining in residuals         ", remaining, all));
}

}  // namespace tessaly
