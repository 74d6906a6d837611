#include "graphs/curve_style.h"

#include <array>
#include <cstddef>

namespace tessaly {

namespace {

/// Okabe & Ito (2008), without the yellow, which is lost on white paper.
constexpr std::array<Color, 7> kPalette = {
    {{0, 114, 178}, {213, 94, 0}, {0, 158, 115}, {204, 121, 167}, {0, 0, 0}, {230, 159, 0}, {86, 180, 233}}};
/// No common divisor with the colours: only every 28th curve looks the same.
constexpr std::array<std::string_view, 4> kDashes = {"", "2.4 0.8", "0.7 0.6", "2.4 0.6 0.6 0.6"};

constexpr Color kBandLine{0, 70, 70};
constexpr Color kScoreLine{0, 0, 255};
constexpr Color kScoreMarker{255, 0, 0};
constexpr Color kScoreModel{213, 94, 0};
/// Far enough apart to tell smoothed data from the model when both lines have one colour.
constexpr double kModelWidth = 0.5;
constexpr double kEmpiricalWidth = kThinLine;
constexpr std::string_view kGuideDash = "1.2 0.8";

template <class T, std::size_t N>
const T& Cycled(const std::array<T, N>& items, std::int32_t at) {
  return items[static_cast<std::uint32_t>(at) % N];
}

CurveStyle ModelStyle(std::int32_t look, GraphKind kind) {
  const Color ink = kind == GraphKind::ExpectedScore ? kScoreModel : Cycled(kPalette, look);
  return {Stroke{ink, kModelWidth, Cycled(kDashes, look)}, {}};
}

CurveStyle EmpiricalStyle(std::int32_t look, bool smoothed, GraphKind kind, JoinMode join) {
  const bool score = kind == GraphKind::ExpectedScore;
  CurveStyle style;
  if (smoothed || join == JoinMode::Both || join == JoinMode::Lines)
    style.Line = Stroke{score ? kScoreLine : Cycled(kPalette, look), kEmpiricalWidth, {}};
  if (!smoothed && (join == JoinMode::Both || join == JoinMode::Points)) {
    style.Marker = score
                       ? Marker{MarkerShape::Circle, kScoreMarker}
                       : Marker{static_cast<MarkerShape>(static_cast<std::uint32_t>(look) % 4), Cycled(kPalette, look)};
  }
  return style;
}

}  // namespace

CurveStyle StyleOf(const Series& series, std::int32_t ordinal, GraphKind kind, JoinMode join) {
  const std::int32_t look = series.Category.value_or(ordinal);
  switch (series.Role) {
    case SeriesRole::Empirical:
      return EmpiricalStyle(look, series.Smoothed, kind, join);
    case SeriesRole::UpperBound:
    case SeriesRole::LowerBound:
      return {Stroke{kBandLine, kThinLine, {}}, {}};
    case SeriesRole::Guide:
      return {Stroke{kBlack, kThinLine, kGuideDash}, {}};
    case SeriesRole::Model:
      break;
  }
  return ModelStyle(look, kind);
}

void DrawMarker(SvgPage& page, SvgPoint at, const Marker& marker) {
  const Stroke outline{kBlack, kThinLine, {}};
  constexpr double r = kMarkerRadius;
  switch (marker.Shape) {
    case MarkerShape::Circle:
      return page.Circle(at, r, marker.Fill, outline);
    case MarkerShape::Square:
      return page.Rect({at.X - r, at.Y - r, at.X + r, at.Y + r}, marker.Fill, outline);
    case MarkerShape::Triangle: {
      const std::array<SvgPoint, 3> corners = {{{at.X, at.Y - r}, {at.X + r, at.Y + r}, {at.X - r, at.Y + r}}};
      return page.Polygon(corners, marker.Fill, outline);
    }
    case MarkerShape::Diamond: {
      constexpr double d = 1.25 * r;
      const std::array<SvgPoint, 4> corners = {
          {{at.X, at.Y - d}, {at.X + d, at.Y}, {at.X, at.Y + d}, {at.X - d, at.Y}}};
      return page.Polygon(corners, marker.Fill, outline);
    }
  }
}

}  // namespace tessaly
