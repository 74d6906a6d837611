#include "reports/table_footer.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "estimate/significance.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kReliabilityWidth = 4;

std::string Decimals(double value, int decimals) {
  return FixedDecimals(static_cast<float>(value), decimals);
}

std::string TrimmedOneDecimal(double value) {
  return std::string(TrimLeft(OneDecimal(value)));
}

std::string Percentage(double part, double whole) {
  return TrimmedOneDecimal(100 * part / whole) + "%";
}

std::string ErrorWord(const Settings& settings) {
  return settings.RealSE ? "Real" : "Model";
}

std::string SeparationLine(double observed, double error, const std::string& label, const Settings& settings,
                           bool ofRaters) {
  const double smallest = static_cast<double>(settings.SmallestNumber);
  const double units = std::fabs(static_cast<double>(settings.Uscale));
  const double trueVariance = std::max(observed - error, 0.0);
  const double errorVariance = SafeFloor64(error);
  const double reliability = observed > smallest ? trueVariance / observed : 0;
  const double separation = std::sqrt(trueVariance / errorVariance);
  return label + ": RMSE " + Decimals(units * std::sqrt(errorVariance), settings.Udecimals) + "  Adj (True) S.D. " +
         Decimals(units * std::sqrt(trueVariance), settings.Udecimals) + "  Separation " + Decimals(separation, 2) +
         "  Strata " + Decimals((4 * separation + 1) / 3, 2) + "  Reliability " +
         (ofRaters ? "(not inter-rater) " : "") + FormatNumber(reliability, kReliabilityWidth, 2);
}

/// The same elements as if drawn from a normal population of the true variance: precisions allow for it.
std::string RandomChiSquareLine(const MeasureSummary& summary, double trueVariance, const std::string& label,
                                const Settings& settings) {
  RunningMoments precision;
  RunningMoments weightedMeasure;
  RunningMoments weightedSquare;
  for (const MeasureSummary::Place& place : summary.Places) {
    const double q = 1 / SafeFloor64(place.Error * place.Error + trueVariance);
    precision.Add(q);
    weightedMeasure.Add(q * place.Measure);
    weightedSquare.Add(q * place.Measure * place.Measure);
  }
  const double chi = WeightedDeviations(precision, weightedMeasure, weightedSquare, settings.SmallestNumber);
  return ChiSquareLine(chi, precision.N - 2, label + ",  Random (normal)");
}

}  // namespace

std::string ChiSquareLine(double chi, double freedom, const std::string& label) {
  chi = std::max(chi, 0.0);
  if (freedom < 1) freedom = 0;
  return label + " chi-square: " + TrimmedOneDecimal(chi) + "  d.f.:" + GeneralText(freedom) +
         "  significance (probability): " + Fixed2(ChiSquareProbability(chi, freedom));
}

std::vector<std::string> SeparationLines(const RowSummaries& summaries, const Settings& settings, bool ofRaters) {
  std::vector<std::string> lines;
  const auto add = [&](const MeasureSummary& set, const std::string& label) {
    const double error = set.ErrorVariance.Mean;
    lines.push_back(SeparationLine(set.Variance(), error, label + ", Populn", settings, ofRaters));
    lines.push_back(SeparationLine(set.SampleVariance(), error, label + ", Sample", settings, ofRaters));
  };
  const std::string word = ErrorWord(settings);
  const bool extremes = summaries.Wide.Count() != summaries.Active.Count();
  if (extremes && summaries.Wide.Count() >= 2) add(summaries.Wide, "   With extremes, " + word);
  if (summaries.Active.Count() >= 2) add(summaries.Active, (extremes ? "Without extremes, " : "") + word);
  return lines;
}

std::vector<std::string> ChiSquareLines(const RowSummaries& summaries, const Settings& settings) {
  const MeasureSummary& wide = summaries.Wide;
  if (wide.Count() < 2) return {};
  const std::string label = (wide.Count() > summaries.Active.Count() ? "With extremes, " : "") + ErrorWord(settings);
  const double fixed =
      WeightedDeviations(wide.Precision, wide.WeightedMeasure, wide.WeightedSquare, settings.SmallestNumber);
  std::vector<std::string> lines = {ChiSquareLine(fixed, wide.Count() - 1, label + ", Fixed (all same)")};
  const double trueVariance = wide.SampleVariance() - wide.ErrorVariance.Mean;
  if (wide.Count() > 2 && trueVariance > 0) lines.push_back(RandomChiSquareLine(wide, trueVariance, label, settings));
  return lines;
}

std::string AgreementLine(const Agreement& agreement) {
  const double opportunities = agreement.AgreementOpportunities;
  const auto count = [](double value) { return std::string(TrimLeft(TrimmedNumber(value))); };
  std::string line = "Inter-Rater agreement opportunities: " + count(opportunities);
  if (!(opportunities > 0)) return line;
  return line + "  Exact agreements: " + count(agreement.ExactAgreements) + " = " +
         Percentage(agreement.ExactAgreements, opportunities) + "  Expected: " + count(agreement.ExpectedAgreements) +
         " = " + Percentage(agreement.ExpectedAgreements, opportunities);
}

}  // namespace tessaly
