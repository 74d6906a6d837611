#include "reports/table5_data_fit.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "estimate/significance.h"
#include "reports/data_moments.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kWideNumber = 20;
constexpr int kWordWidth = 25;
constexpr int kFitCountWidth = 10;
constexpr int kMomentWidth = 7;
constexpr int kParameterWidth = 9;

std::string WideNumber(double value) {
  return std::string(TrimLeft(FormatNumber(value, kWideNumber, 4)));
}

std::string StatusWords(std::int32_t status) {
  switch (status) {
    case 1:
      return "used for estimation";
    case 2:
      return "in one extreme score";
    case -1:
      return "invalid after recounting";
    case -2:
      return "with invalid elements";
    case -3:
      return "in two extreme scores";
    case -4:
      return "only in extreme scores";
    case -5:
      return "after end-of-file";
    default:
      return "type:" + GeneralText(status);
  }
}

class FitSummary {
 public:
  FitSummary(const DataFit& fit, const Settings& settings, ReportWriter& report, Console& console)
      : fit_(fit), settings_(settings), report_(report), console_(console) {}

  void Write() {
    TableFrame frame(report_, settings_, console_);
    frame.StartTable("Table 5. Measurable Data Summary");
    WriteDataMoments(fit_, settings_, report_);
    WriteChiSquare();
    WriteCounts();
    WriteVariances();
  }

 private:
  void WriteChiSquare() {
    const double chi = -2 * fit_.LogLikelihood;
    const std::int32_t parameters = std::max(fit_.ParameterCount[DataFit::Row(ReadStatus::Usable)], 1);
    const double freedom = std::max(std::trunc(fit_.Weight() - parameters), 1.0);
    report_.WriteTableLine("Data log-likelihood chi-square = " + WideNumber(chi));
    report_.WriteTableLine("Approximate degrees of freedom =" + GeneralText(freedom));
    report_.WriteTableLine("Chi-square significance prob.  = " +
                           WideNumber(static_cast<double>(ChiSquareProbability(chi, freedom))));
  }

  void WriteCountRow(const std::string& words, double count, double mean, double deviation, std::int64_t parameters) {
    report_.WriteTableLine(words + "=" + FormatNumber(count, kFitCountWidth, 0) + ZeroedNumber(mean, kMomentWidth, 2) +
                           ZeroedNumber(deviation, kMomentWidth, 2) +
                           RightJustified(BareText(parameters), kParameterWidth));
  }

  void WriteCounts() {
    report_.WriteTableLine(std::string(41, ' ') + "Count   Mean   S.D.   Params");
    int rows = 0;
    double count = 0;
    double sum = 0;
    double squares = 0;
    std::int64_t parameters = 0;
    for (std::size_t row = 1; row < fit_.ResponsesByStatus.size(); ++row) {
      const RunningMoments& responses = fit_.ResponsesByStatus[row];
      if (responses.N == 0 && fit_.ParameterCount[row] <= 0) continue;
      ++rows;
      const double variance = responses.Squares / std::max(responses.N, 1.0);
      const auto status = static_cast<std::int32_t>(row) - DataFit::kStatusOffset;
      WriteCountRow("Responses " + CutOrPad(StatusWords(status), kWordWidth), responses.N, responses.Mean,
                    std::sqrt(variance), fit_.ParameterCount[row]);
      count += responses.N;
      sum += responses.N * responses.Mean;
      squares += responses.Squares + responses.N * responses.Mean * responses.Mean;
      parameters += fit_.ParameterCount[row];
    }
    if (rows > 1) {
      const double n = std::max(count, 1.0);
      const double mean = sum / n;
      WriteCountRow("All Responses" + std::string(22, ' '), count, mean,
                    std::sqrt(std::max(squares / n - mean * mean, 0.0)), parameters);
    }
    report_.WriteTableLine(
        fit_.WeightedData ? "Count of measurable responses (wtd)=" + ZeroedNumber(fit_.Weight(), 13, 3)
                          : "Count of measurable responses      =" + FormatNumber(fit_.Weight(), kFitCountWidth, 0));
  }

  void WriteVariances() {
    const double all = VarianceOf(fit_, DataFit::Reported);
    const double residual = VarianceOf(fit_, DataFit::Residual);
    report_.WriteTableLine(VarianceLine("Raw-score variance of observations   ", all, all));
    report_.WriteTableLine(VarianceLine("Variance explained by Rasch measures ", all - residual, all));
    report_.WriteTableLine(VarianceLine("Variance of residuals                ", residual, all));
  }

  const DataFit& fit_;
  const Settings& settings_;
  ReportWriter& report_;
  Console& console_;
};

}  // namespace

void MeasurableDataSummary(const DataFit& fit, const Settings& settings, ReportWriter& report, Console& console) {
  FitSummary(fit, settings, report, console).Write();
}

}  // namespace tessaly
