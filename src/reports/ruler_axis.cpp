#include "reports/ruler_axis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/number_text.h"

namespace tessaly {

namespace {

/// Lines of an axis whose lines per unit are to be found, and the fewest and the most of them in a unit.
constexpr double kWantedLines = 50;
constexpr double kFewestPerUnit = 1;
constexpr double kMostPerUnit = 10;
/// A yardstick whose ends are nearer to each other has none.
constexpr double kShortestAxis = 1e-6;

bool SetsTheRange(ElementStatus status, bool extremesByMeasure) {
  if (WithoutMeasure(status)) return false;
  return extremesByMeasure || Measurable(status) || status == ElementStatus::OneDatum;
}

struct Range {
  double Low = std::numeric_limits<double>::infinity();
  double High = -std::numeric_limits<double>::infinity();

  void Meet(double value) {
    if (std::isnan(value)) return;
    const double held = std::clamp(value, -kFarthestMeasure, kFarthestMeasure);
    Low = std::min(Low, held);
    High = std::max(High, held);
  }
};

Range WholeRange(const RulerColumns& columns, bool extremesByMeasure, const FacetTable& facets,
                 const ElementTable& elements, const Settings& settings) {
  Range range;
  for (const FacetColumn& column : columns.Facets) {
    for (const ElementIndex element : facets[column.Facet].Elements()) {
      if (SetsTheRange(elements.ElementStatus[element], extremesByMeasure))
        range.Meet(double(settings.UserMeasure(elements.ElementMeasure[element])));
    }
  }
  if (range.Low > range.High) range.Meet(double(settings.UserMeasure(0)));
  range.Low = std::floor(range.Low);
  range.High = std::ceil(range.High);
  if (range.Low == range.High) {
    range.Low -= 1;
    range.High += 1;
  }
  return range;
}

}  // namespace

std::int32_t RulerAxis::LinesAboveLow(double measure) const {
  constexpr double kFarOff = 2.0 * kMostRulerLines;
  return RoundToLong(std::clamp((measure - Low) * LinesPerUnit, -kFarOff, kFarOff));
}

std::int32_t RulerAxis::LineOf(double measure) const {
  return std::clamp(LastLine - LinesAboveLow(measure), 0, LastLine);
}

std::optional<std::int32_t> RulerAxis::NumberAt(std::int32_t line) const {
  const double measure = MeasureAt(line);
  const std::int32_t nearest = RoundToLong(measure);
  // Where a line lies halfway between two numbers, the other one may be the one that stands on it.
  for (const std::int32_t number : {nearest, nearest + (measure > nearest ? 1 : -1)}) {
    if (LinesAboveLow(number) == LastLine - line) return number;
  }
  return {};
}

int RulerAxis::NumberWidth() const {
  const auto width = [](double number) { return static_cast<int>(BareText(RoundToLong(number)).size()); };
  return std::max(width(Low), width(MeasureAt(0)));
}

RulerAxis FitRulerAxis(const RulerColumns& columns, const Yardstick& yardstick, const FacetTable& facets,
                       const ElementTable& elements, const Settings& settings) {
  Range range;
  range.Meet(double(yardstick.Low));
  range.Meet(double(yardstick.High));
  if (range.High - range.Low < kShortestAxis)
    range = WholeRange(columns, yardstick.ExtremesByMeasure, facets, elements, settings);
  const double length = range.High - range.Low;
  RulerAxis axis;
  axis.Low = range.Low;
  axis.High = range.High;
  axis.LinesPerUnit = double(yardstick.LinesPerUnit);
  if (axis.LinesPerUnit <= 0)
    axis.LinesPerUnit = std::clamp(std::trunc(kWantedLines / length), kFewestPerUnit, kMostPerUnit);
  const double lines = std::round(length * axis.LinesPerUnit);
  axis.LastLine = static_cast<std::int32_t>(std::clamp(lines, 1.0, double{kMostRulerLines}));
  if (axis.LastLine != lines) axis.LinesPerUnit = axis.LastLine / length;
  return axis;
}

}  // namespace tessaly
