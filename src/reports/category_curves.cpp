#include "reports/category_curves.h"

#include <algorithm>
#include <utility>

#include "reports/box_line.h"
#include "reports/scale_structure.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::int32_t kMostRows = 20;
/// An ogive has about this many rows.
constexpr std::int32_t kOgiveRows = 15;
/// Runs down beside the rows of the probabilities.
constexpr std::string_view kProbabilityAxis = "1    Probability    0";
static_assert(kProbabilityAxis.size() == kMostRows + 1);
/// Columns in front of the frame of a plot.
constexpr std::size_t kFrameMargin = kChartMargin - 1;
constexpr int kSideWidth = kFrameMargin - 1;

/// One plot being drawn: what stands beside each row, and the rows, from the top.
struct Plot {
  Plot(std::int32_t rows, std::int32_t columns)
      : Sides(static_cast<std::size_t>(rows) + 1, std::string(kSideWidth, ' ')),
        Rows(static_cast<std::size_t>(rows) + 1, std::string(static_cast<std::size_t>(columns) + 1, ' ')) {}

  /// The row at `height` of the axis on the left, 0 at the bottom.
  std::size_t RowAt(float height) const {
    const auto top = static_cast<std::int16_t>(Rows.size() - 1);
    return static_cast<std::size_t>(top - std::clamp<std::int16_t>(RoundToInteger(height), 0, top));
  }

  std::vector<std::string> Sides;
  std::vector<std::string> Rows;
};

/// Draws the plots of one scale.
class Curves {
 public:
  Curves(const ReportedScale& scale, const MeasureAxis& axis, float uscale, bool crossTicks, ResponseKernel& kernel)
      : scale_(scale), axis_(axis), uscale_(uscale), crossTicks_(crossTicks), kernel_(kernel) {}

  Plot Probabilities() const {
    Plot plot(kMostRows, axis_.Columns());
    for (std::size_t row = 0; row < plot.Sides.size(); ++row) plot.Sides[row].back() = kProbabilityAxis[row];
    for (std::int32_t column = 1; column <= axis_.Columns(); ++column) {
      ExpectedAt(column);
      for (std::int32_t k = 0; k <= scale_.Top; ++k) {
        const std::size_t row = plot.RowAt(kernel_.Probability(k) * kMostRows);
        char& cell = plot.Rows[row][static_cast<std::size_t>(column)];
        cell = cell == ' ' ? LastDigit(k) : '*';
      }
    }
    return plot;
  }

  Plot Ogive() const {
    const std::int32_t rows = std::min((kOgiveRows + scale_.Top) / scale_.Top * scale_.Top, kMostRows);
    Plot plot(rows, axis_.Columns());
    const auto heightOf = [&](float score) {
      return score * static_cast<float>(rows) / static_cast<float>(scale_.Top);
    };
    for (std::int32_t k = 0; k <= scale_.Top; ++k)
      plot.Sides[plot.RowAt(heightOf(static_cast<float>(k)))] = RightJustified(BareText(Raw(k)), kSideWidth);
    for (std::int32_t column = 1; column <= axis_.Columns(); ++column) {
      const float expected = ExpectedAt(column);
      const std::int32_t nearest = std::clamp<std::int32_t>(RoundToInteger(expected), 0, scale_.Top);
      plot.Rows[plot.RowAt(heightOf(expected))][static_cast<std::size_t>(column)] = LastDigit(nearest);
    }
    return plot;
  }

  /// The lines of a plot in its frame, under its name.
  std::vector<std::string> Framed(std::string_view name, const Plot& plot) const {
    const std::string numbers = TickNumbers(axis_, "");
    std::vector<std::string> lines = {std::string(name), numbers, FrameRule(RuleKind::Top)};
    const std::string bar(1, box::kVertical);
    for (std::size_t row = 0; row < plot.Rows.size(); ++row)
      lines.push_back(plot.Sides[row] + " " + bar + plot.Rows[row] + bar);
    lines.push_back(FrameRule(RuleKind::Bottom));
    lines.push_back(numbers);
    lines.emplace_back();
    return lines;
  }

 private:
  std::int32_t Raw(std::int32_t ordinal) const { return scale_.RawCategory[static_cast<std::size_t>(ordinal)]; }
  char LastDigit(std::int32_t ordinal) const { return static_cast<char>('0' + Raw(ordinal) % 10); }

  /// Fills the kernel's probabilities at a column of the axis.
  float ExpectedAt(std::int32_t column) const {
    const float logit = std::clamp(axis_.MeasureAt(column) / uscale_, -kFarthestLogit, kFarthestLogit);
    return kernel_.CategoryProbabilities(scale_.Number, scale_.Type, scale_.Top, logit);
  }

  std::string FrameRule(RuleKind kind) const {
    std::string rule(static_cast<std::size_t>(axis_.Columns()) + 1, '-');
    for (std::int32_t tick = 0; tick <= axis_.Ticks; ++tick)
      rule[static_cast<std::size_t>(tick * axis_.ColumnsPerTick)] = 'x';
    return std::string(kFrameMargin, ' ') + BoxLine("x" + rule + "x", kind, crossTicks_);
  }

  const ReportedScale& scale_;
  const MeasureAxis& axis_;
  float uscale_;
  bool crossTicks_;
  ResponseKernel& kernel_;
};

}  // namespace

std::vector<std::string> CategoryCurves(const ReportedScale& scale, const MeasureAxis& axis, float uscale,
                                        bool crossTicks, ResponseKernel& kernel) {
  const Curves curves(scale, axis, uscale, crossTicks, kernel);
  std::vector<std::string> lines = curves.Framed("Probability Curves", curves.Probabilities());
  for (std::string& line : curves.Framed("Expected Score Ogive (Model ICC)", curves.Ogive()))
    lines.push_back(std::move(line));
  return lines;
}

}  // namespace tessaly
