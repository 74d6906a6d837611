// What the summaries of the data have in common: moments of responses and residuals, shares of variance.
#pragma once

#include <string>
#include <string_view>

#include "estimate/data_fit.h"
#include "reports/report_writer.h"
#include "state/settings.h"

namespace tessaly {

/// The box of means and standard deviations of `fit`.
void WriteDataMoments(const DataFit& fit, const Settings& settings, ReportWriter& report);

/// Square of the standard deviation of an item of `fit`.
double VarianceOf(const DataFit& fit, DataFit::Item item);

/// A line of a variance and its share of `all`; with `all` 0 the share is of 1.
std::string VarianceLine(std::string_view words, double variance, double all);

}  // namespace tessaly
