#include "graphs/graph_axes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "model/measure_axis.h"

namespace tessaly {

namespace {

/// So far out that sums and round steps of measures still are 32-bit integers.
constexpr double kFarthestAxis = 9e8;

/// Nearest integer, ties to even, held at `kFarthestAxis`; 0 for what is no number.
std::int64_t Rounded(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<std::int64_t>(std::nearbyint(std::clamp(value, -kFarthestAxis, kFarthestAxis)));
}

struct WholeRange {
  std::int64_t Low = 0;
  std::int64_t High = 1;

  std::int64_t Span() const { return High - Low; }
};

/// Long ranges in tens, ranges around 0 symmetric.
WholeRange ShownRange(double low, double high) {
  WholeRange shown{Rounded(std::floor(low)), Rounded(std::ceil(high))};
  // Far out, singles must still tell the ends apart.
  const std::int64_t shortest = 1 + std::max(std::abs(shown.Low), std::abs(shown.High)) / 1000000;
  shown.High = std::max(shown.High, shown.Low + shortest);
  constexpr std::int64_t kLongest = 20;
  const std::int64_t span = shown.Span();
  const std::int64_t tens = Rounded(static_cast<double>(span) / 10);
  if (span > kLongest && 10 * tens != span) {
    const std::int64_t longer = 10 * (tens + 1);
    shown.Low = Rounded(static_cast<double>(shown.Low) - static_cast<double>(longer - span) / 2);
    shown.High = shown.Low + longer;
  }
  if (shown.Low < 0 && shown.High > 0) {
    shown.High = std::max(-shown.Low, shown.High);
    shown.Low = -shown.High;
  }
  return shown;
}

/// How many divisions show a span of whole units.
std::int64_t Divisions(std::int64_t span) {
  constexpr std::int64_t kMost = 20;
  std::int64_t divisions = std::max<std::int64_t>(span, 1);
  while (2 * divisions < kMost) divisions *= 2;
  if (divisions <= kMost) return divisions;
  for (std::int64_t count = 10; count >= 3; --count)
    if (divisions % count == 0) return count;
  return 10;
}

std::int32_t Narrow(std::int64_t value) {
  return static_cast<std::int32_t>(value);
}

}  // namespace

MeasureGrid FitXAxis(const CurveRange& curves, const EmpiricalRange& data, double unit) {
  const WholeRange shown = ShownRange(static_cast<double>(std::min({curves.Low, curves.High, data.DataMin})),
                                      static_cast<double>(std::max({curves.Low, curves.High, data.DataMax})));
  const std::int64_t margin = std::min(Rounded(2 * (unit + 0.1)), Rounded(kFarthestAxis / 10));
  // Never nothing: what is farthest is well within its bounds.
  const MeasureAxis full = *FitMeasureAxis(static_cast<float>(shown.Low - margin),
                                           static_cast<float>(shown.High + margin), kMostGridRows - 1);
  MeasureGrid grid;
  grid.Steps = full.Columns();
  XAxisSettings& axis = grid.Axis;
  axis.Divisions = static_cast<float>(Divisions(shown.Span()));
  axis.FullMin = axis.SliderMin = Narrow(full.Low);
  axis.FullMax = axis.SliderMax = Narrow(full.High);
  axis.ShownMin = axis.SliderLow = static_cast<float>(shown.Low);
  axis.ShownMax = axis.SliderHigh = static_cast<float>(shown.High);
  return grid;
}

YAxisSettings FitYAxis(GraphKind kind, const GraphScale& scale, float largest) {
  constexpr std::int64_t kFinestDivided = 3;
  WholeRange range{0, 1};
  std::int64_t divisions = 10;
  if (kind == GraphKind::ExpectedScore) {
    range = {scale.BottomCategory, scale.BottomCategory + scale.TopCategory};
    divisions = range.Span() <= kFinestDivided ? 4 * range.Span() : range.Span();
  } else if (kind == GraphKind::ItemInformation || kind == GraphKind::CategoryInformation) {
    range.High = std::max<std::int64_t>(Rounded(std::ceil(static_cast<double>(largest))), 1);
    divisions = range.High <= kFinestDivided ? 4 * range.High : range.High;
  }
  YAxisSettings axis;
  axis.Divisions = Narrow(std::max<std::int64_t>(divisions, 1));
  axis.FullMin = Narrow(range.Low);
  axis.FullMax = Narrow(range.High);
  axis.ShownMin = static_cast<float>(range.Low);
  axis.ShownMax = static_cast<float>(range.High);
  // Controls of short ranges move in fractions of a unit.
  const std::int64_t finer =
      std::max<std::int64_t>(Rounded(10.0 / static_cast<double>(std::max<std::int64_t>(range.Span(), 1))), 1);
  axis.SliderLow = axis.SliderMin = Narrow(range.Low * finer);
  axis.SliderHigh = axis.SliderMax = Narrow(range.High * finer);
  return axis;
}

}  // namespace tessaly
