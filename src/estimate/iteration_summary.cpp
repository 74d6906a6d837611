#include "estimate/iteration_summary.h"

namespace tessaly {

void KeepLargest(const ResidualDetail& detail, IterationSummary& summary, LargestResiduals& largest) {
  if (LargerInSize(detail.Residual, summary.MaxScoreResidual)) {
    summary.MaxScoreResidual = detail.Residual;
    largest.Residual = detail;
  }
  if (LargerInSize(detail.Fraction, summary.MaxResidualFraction)) {
    summary.MaxResidualFraction = detail.Fraction;
    largest.Fraction = detail;
  }
  if (LargerInSize(detail.Change, summary.MaxLogitChange)) {
    summary.MaxLogitChange = detail.Change;
    largest.Change = detail;
  }
}

}  // namespace tessaly
