#include "reports/table5_data_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "estimate/significance.h"
#include "reports/short_layout.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr int kNumberWidth = 5;
constexpr int kWideNumber = 20;
constexpr int kWordWidth = 25;
constexpr int kCountWidth = 10;
constexpr int kMomentWidth = 7;
constexpr int kParameterWidth = 9;
constexpr int kShareWidth = 8;

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

class DataSummary {
 public:
  DataSummary(const DataFit& fit, const Settings& settings, ReportWriter& report, Console& console)
      : fit_(fit), settings_(settings), report_(report), console_(console) {}

  void Write() {
    TableFrame frame(report_, settings_, console_);
    frame.StartTable("Table 5. Measurable Data Summary");
    const ShortLayout layout = BuildShortLayout("", settings_.LeftHand, settings_.Encoding);
    report_.WriteTableLine(BoxLine(layout.RuleTemplate, RuleKind::Top));
    report_.WriteTableLine(layout.Heading);
    WriteMoments(layout);
    report_.WriteTableLine(BoxLine(std::string(layout.RuleTemplate.size(), '-'), RuleKind::Bottom));
    WriteChiSquare();
    WriteCounts();
    WriteVariances();
  }

 private:
  double Weight() const { return fit_.Summary[DataFit::Response].N; }

  template <class Figure>
  void WriteRow(const ShortLayout& layout, const std::string& label, Figure figure) {
    std::array<std::string, DataFit::ItemCount> numbers;
    for (std::size_t item = 0; item < numbers.size(); ++item)
      numbers[item] = FormatNumber(figure(fit_.Summary[item]), kNumberWidth, 2);
    report_.WriteTableLine(layout.Row(label, numbers, settings_.Encoding));
  }

  std::string MeanLabel(int width) const {
    const std::string count = TrimmedNumber(Weight()) + ")";
    const std::string label = (fit_.WeightedData ? "Mean (Weighted: " : "Mean (Count: ") + count;
    if (label.size() <= static_cast<std::size_t>(width)) return label;
    return (fit_.WeightedData ? "Mean (Wtd: " : "Mean (Cnt: ") + count;
  }

  void WriteMoments(const ShortLayout& layout) {
    WriteRow(layout, MeanLabel(layout.LabelWidth), [](const RunningMoments& m) { return m.Mean; });
    WriteRow(layout, "S.D. (Population)", [](const RunningMoments& m) { return m.StandardDeviation(); });
    const double n = Weight();
    if (n > 1)
      WriteRow(layout, "S.D. (Sample)",
               [&](const RunningMoments& m) { return m.StandardDeviation() * std::sqrt(n / (n - 1)); });
  }

  void WriteChiSquare() {
    const double chi = -2 * fit_.LogLikelihood;
    const std::int32_t parameters = std::max(fit_.ParameterCount[DataFit::Row(ReadStatus::Usable)], 1);
    const double freedom = std::max(std::trunc(Weight() - parameters), 1.0);
    report_.WriteTableLine("Data log-likelihood chi-square = " + WideNumber(chi));
    report_.WriteTableLine("Approximate degrees of freedom =" + GeneralText(freedom));
    report_.WriteTableLine("Chi-square significance prob.  = " +
                           WideNumber(static_cast<double>(ChiSquareProbability(chi, freedom))));
  }

  void WriteCountRow(const std::string& words, double count, double mean, double deviation, std::int64_t parameters) {
    report_.WriteTableLine(words + "=" + FormatNumber(count, kCountWidth, 0) + ZeroedNumber(mean, kMomentWidth, 2) +
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
    report_.WriteTableLine(fit_.WeightedData
                               ? "Count of measurable responses (wtd)=" + ZeroedNumber(Weight(), 13, 3)
                               : "Count of measurable responses      =" + FormatNumber(Weight(), kCountWidth, 0));
  }

  void WriteVariances() {
    const auto variance = [&](DataFit::Item item) {
      const double deviation = fit_.Summary[item].StandardDeviation();
      return deviation * deviation;
    };
    const double all = variance(DataFit::Reported);
    const double residual = variance(DataFit::Residual);
    const auto figure = [](double value) { return ZeroedNumber(value, kMomentWidth, 3); };
    const auto share = [&](double value) {
      return ZeroedNumber(100 * value / (all == 0 ? 1.0 : all), kShareWidth - 1, 2) + "%";
    };
    report_.WriteTableLine("Raw-score variance of observations   =" + figure(all) + " 100.00%");
    report_.WriteTableLine("Variance explained by Rasch measures =" + figure(all - residual) + share(all - residual));
    report_.WriteTableLine("Variance of residuals                =" + figure(residual) + share(residual));
  }

  const DataFit& fit_;
  const Settings& settings_;
  ReportWriter& report_;
  Console& console_;
};

}  // namespace

void MeasurableDataSummary(const DataFit& fit, const Settings& settings, ReportWriter& report, Console& console) {
  DataSummary(fit, settings, report, console).Write();
}

}  // namespace tessaly
