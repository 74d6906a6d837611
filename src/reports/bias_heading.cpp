#include "reports/bias_heading.h"

#include <string>
#include <string_view>

namespace tessaly {

namespace {

void WriteHeading(const BiasTerms& terms, std::string_view meaning, ReportWriter& report) {
  report.WriteTableLine("Bias/Interaction: " + terms.Label() + std::string(meaning));
  report.WriteTableLine("");
}

}  // namespace

void WriteBiasHeading(const BiasTerms& terms, ReportWriter& report) {
  WriteHeading(terms, "", report);
}

void WriteBiasHeading(const BiasTerms& terms, BiasDirection direction, ReportWriter& report) {
  const bool plus = direction == BiasDirection::Plus;
  WriteHeading(terms, plus ? " (higher score = higher bias measure)" : " (lower score = higher bias measure)", report);
}

}  // namespace tessaly
