#include "reports/barchart.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "reports/box_line.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Up to here a double tells every whole number from the next.
constexpr double kLargestDrawn = 1e15;
/// An axis that is longer and reaches further than this runs from ten to ten.
constexpr double kTen = 10;
constexpr double kMostColumnsPerUnit = 20;
/// Blanks behind the scale text.
constexpr std::size_t kScaleMargin = 8;
/// Place of column 0 in a line: the axis begins behind a blank.
constexpr std::size_t kFirstColumn = 1;

std::size_t PlaceOf(std::int32_t column) {
  return kFirstColumn + static_cast<std::size_t>(column);
}

/// Steps of 20, 10, 5, 4, 2, 1, 1/2 and so on; a short axis takes the full width.
double FittingColumns(double range) {
  if (range <= 2) return BarchartAxis::kWidest / range;
  double columns = kMostColumnsPerUnit;
  while (range * columns > BarchartAxis::kWidest) {
    columns /= 2;
    if (columns == 2.5) columns = 4;
  }
  return columns;
}

std::string EndOfAxis(double whole) {
  return GeneralText(static_cast<std::int64_t>(whole));
}

/// The next number above `number` with fewer digits than its `text`: -99 for -250. Infinity if there is none.
double NextShorter(double number, std::string_view text) {
  if (number >= 0) return std::numeric_limits<double>::infinity();
  const auto digits = static_cast<int>(text.size()) - 1;
  return 1 - std::pow(10.0, digits - 1);
}

}  // namespace

void BarchartRange::Meet(double value) {
  if (std::isnan(value)) return;
  Lowest = std::min(Lowest, value);
  Highest = std::max(Highest, value);
}

std::int32_t BarchartAxis::Column(double value) const {
  return RoundToLong(ColumnsPerUnit * (value - Bottom));
}

std::optional<BarchartAxis> FitAxis(const BarchartRange& range) {
  if (std::fabs(range.Lowest) > kLargestDrawn || std::fabs(range.Highest) > kLargestDrawn) return {};
  BarchartAxis axis;
  axis.Bottom = std::floor(range.Lowest);
  axis.Top = std::ceil(range.Highest);
  if (axis.Bottom == axis.Top) {
    --axis.Bottom;
    ++axis.Top;
  }
  const bool far = std::max(std::fabs(axis.Bottom), std::fabs(axis.Top)) > kTen;
  if (far && axis.Top - axis.Bottom > kTen) {
    axis.Bottom = kTen * std::floor(axis.Bottom / kTen);
    axis.Top = kTen * std::ceil(axis.Top / kTen);
  }
  const double length = axis.Top - axis.Bottom;
  axis.ColumnsPerUnit = FittingColumns(length);
  axis.Width = RoundToLong(length * axis.ColumnsPerUnit);
  return axis;
}

Barchart::Barchart(std::string label, const BarchartRange& range) : label_(std::move(label)), axis_(FitAxis(range)) {}

void Barchart::Tally(double value) {
  if (!axis_ || !std::isfinite(value)) return;
  ++tallies_[static_cast<std::size_t>(std::clamp(axis_->Column(value), 0, axis_->Width))];
  const double distance = value - axis_->Bottom;
  ++count_;
  sum_ += distance;
  squares_ += distance * distance;
}

std::vector<std::string> Barchart::Lines() const {
  if (count_ == 0) return {};
  const auto inner = static_cast<std::size_t>(axis_->Width) - 1;
  std::string axisLine(1, ' ');
  axisLine.append(1, box::kCross).append(inner, box::kHorizontal).append(1, box::kCross);
  std::string scaleLine(axisLine.size() + kScaleMargin, ' ');
  DrawScale(axisLine, scaleLine);
  MarkMoments(axisLine);

  std::vector<std::string> lines = {label_};
  for (std::string& row : TallyRows()) lines.push_back(std::move(row));
  lines.push_back(std::move(axisLine));
  lines.push_back(std::move(scaleLine));
  lines.emplace_back();
  return lines;
}

std::vector<std::string> Barchart::TallyRows() const {
  const std::size_t digits = BareText(*std::max_element(tallies_.begin(), tallies_.end())).size();
  std::vector<std::string> rows(digits, std::string(PlaceOf(axis_->Width) + 1, ' '));
  for (std::int32_t column = 0; column <= axis_->Width; ++column) {
    const std::int32_t tally = tallies_[static_cast<std::size_t>(column)];
    if (tally == 0) continue;
    const std::string text = RightJustified(BareText(tally), static_cast<int>(digits));
    for (std::size_t digit = 0; digit < digits; ++digit) rows[digit][PlaceOf(column)] = text[digit];
  }
  return rows;
}

void Barchart::DrawScale(std::string& axisLine, std::string& scaleLine) const {
  const std::string bottom = EndOfAxis(axis_->Bottom);
  const std::string top = EndOfAxis(axis_->Top);
  const std::size_t topStart = axisLine.size() - top.size();
  scaleLine.replace(0, bottom.size(), bottom);
  scaleLine.replace(topStart, top.size(), top);

  std::size_t free = bottom.size();
  for (double number = axis_->Bottom; number < axis_->Top;) {
    const std::string text = EndOfAxis(number);
    const auto column = static_cast<std::int32_t>(axis_->ColumnsPerUnit * (number - axis_->Bottom));
    const std::size_t tick = PlaceOf(column);
    const std::size_t before = text.size() / 2;
    if (tick >= free + before && tick - before + text.size() <= topStart) {
      axisLine[tick] = box::kCross;
      scaleLine.replace(tick - before, text.size(), text);
      free = tick - before + text.size();
    }
    // A column may stand for any number of numbers: only a shorter text fits where this one does not.
    number = std::min(axis_->Bottom + std::ceil((column + 1) / axis_->ColumnsPerUnit), NextShorter(number, text));
  }
}

void Barchart::MarkMoments(std::string& axisLine) const {
  const double mean = sum_ / count_;
  const double deviation = std::sqrt(std::max(squares_ / count_ - mean * mean, 0.0));
  const auto mark = [&](char letter, double distance) {
    const std::int32_t column = axis_->Column(axis_->Bottom + distance);
    if (column >= 0 && column <= axis_->Width) axisLine[PlaceOf(column)] = letter;
  };
  mark('Q', mean - 2 * deviation);
  mark('Q', mean + 2 * deviation);
  mark('S', mean - deviation);
  mark('S', mean + deviation);
  mark('M', mean);
}

}  // namespace tessaly
