#include "graphs/curve_picture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "graphs/curve_labels.h"
#include "graphs/curve_legend.h"
#include "graphs/display_text.h"
#include "graphs/picture_clip.h"
#include "graphs/plot_frame.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr double kPageWidth = 80;
constexpr double kPlotHeight = 50;
constexpr double kAxisTitleSize = 2.6;
constexpr double kMinorTickLength = 0.6;
constexpr double kTickGap = 0.6;
constexpr Stroke kAxisStroke{kBlack, kThinLine, {}};

std::vector<StyledCurve> StyledCurves(const CurvePlot& plot, JoinMode join) {
  std::array<std::int32_t, 5> ordinals{};
  std::vector<StyledCurve> curves;
  for (const Series& series : plot.Curves) {
    const std::int32_t ordinal = ordinals.at(static_cast<std::size_t>(series.Role))++;
    StyledCurve curve{&series, StyleOf(series, ordinal, plot.Kind, join)};
    if (!series.Points.empty() && curve.Style.Drawn()) curves.push_back(std::move(curve));
  }
  return curves;
}

/// Draws one picture from its upper edge down.
class Picture {
 public:
  Picture(const CurvePlot& plot, JoinMode join, std::string_view unit)
      : plot_(plot), unit_(unit), curves_(StyledCurves(plot, join)), page_(kPageWidth) {}

  std::string Draw() {
    const double plotTop = DrawTitle(kEdge);
    PlaceFrame(plotTop);
    page_.Rect(frame_.Box, kWhite, kAxisStroke);
    DrawBand();
    for (const auto role :
         {SeriesRole::Guide, SeriesRole::Model, SeriesRole::UpperBound, SeriesRole::LowerBound, SeriesRole::Empirical})
      DrawLines(role);
    DrawCurveLabels(page_, plot_, frame_);
    DrawMarkers();
    if (curves_.empty()) {
      page_.Text({(frame_.Box.Left + frame_.Box.Right) / 2, (frame_.Box.Top + frame_.Box.Bottom) / 2},
                 "Nothing to draw", {.Size = kTitleSize, .Anchor = TextAnchor::Middle});
    }
    DrawYAxis();
    const double axisEnd = DrawXAxis();
    const double legendEnd = DrawLegend(page_, curves_, kEdge, kPageWidth - kEdge, axisEnd + 1.5);
    return page_.Finish(DrawInterval(legendEnd) + kEdge, plot_.Title);
  }

 private:
  /// Centred lines; gives where they end.
  double DrawTextLines(const std::vector<std::string>& lines, double middle, double top, TextStyle style) {
    style.Anchor = TextAnchor::Middle;
    for (const std::string& line : lines) {
      page_.Text({middle, top + style.Size}, line, style);
      top += kLineFeed * style.Size;
    }
    return top;
  }

  double DrawTitle(double top) {
    const double width = (kPageWidth - 2 * kEdge) * kBoldRoom;
    const std::vector<std::string> lines = Wrapped(DisplayText(plot_.Title), kTitleSize, width, 2);
    return DrawTextLines(lines, kPageWidth / 2, top, {.Size = kTitleSize, .Bold = true}) + 1.5;
  }

  /// Divisions were made for the range that the axis began with, and many of them have no room: any other axis has
  /// ticks at round values.
  static PictureAxis AxisFor(float low, float high, bool asFitted, double divisions) {
    constexpr double kRoundTicks = 10;
    if (asFitted && !(divisions > kMostDivisions)) return DivideAxis(double(low), double(high), divisions);
    return RoundAxis(double(low), double(high), kRoundTicks);
  }

  void PlaceFrame(double top) {
    const XAxisSettings& x = plot_.X;
    const YAxisSettings& y = plot_.Y;
    frame_.X =
        AxisFor(x.ShownMin, x.ShownMax, x.ShownMin == x.SliderLow && x.ShownMax == x.SliderHigh, double(x.Divisions));
    frame_.Y = AxisFor(y.ShownMin, y.ShownMax,
                       y.ShownMin == static_cast<float>(y.FullMin) && y.ShownMax == static_cast<float>(y.FullMax),
                       double(y.Divisions));
    ThinLabels(frame_.Y, kPlotHeight, kLineFeed * kSmallText);
    const double left = kEdge + kLineFeed * kAxisTitleSize + WidestLabel(frame_.Y) + kTickGap + kTickLength + 0.5;
    frame_.Box = {left, top, kPageWidth - 2 * kEdge, top + kPlotHeight};
    ThinLabels(frame_.X, frame_.Box.Width(), WidestLabel(frame_.X) + kSmallText / 2);
  }

  static double WidestLabel(const PictureAxis& axis) {
    double widest = 0;
    for (const AxisTick& tick : axis.Ticks) widest = std::max(widest, TextWidth(tick.Label, kSmallText));
    return widest;
  }

  const Series* Bound(SeriesRole role) const {
    for (const StyledCurve& curve : curves_) {
      if (curve.Curve->Role == role) return curve.Curve;
    }
    return nullptr;
  }

  void DrawBand() {
    const Series* upper = Bound(SeriesRole::UpperBound);
    const Series* lower = Bound(SeriesRole::LowerBound);
    if (upper == nullptr || lower == nullptr) return;
    auto areas = frame_.Runs(*upper);
    const auto floors = frame_.Runs(*lower);
    page_.BeginGroup("band");
    for (std::size_t at = 0; at < std::min(areas.size(), floors.size()); ++at) {
      areas[at].insert(areas[at].end(), floors[at].rbegin(), floors[at].rend());
      const std::vector<SvgPoint> inside = ClippedArea(std::move(areas[at]), frame_.Box);
      if (inside.size() > 2) page_.Polygon(inside, kBandFill);
    }
    page_.EndGroup();
  }

  void DrawLines(SeriesRole role) {
    for (const StyledCurve& curve : curves_) {
      if (curve.Curve->Role != role || !curve.Style.Line) continue;
      page_.BeginGroup("curve");
      for (const std::vector<SvgPoint>& run : frame_.Runs(*curve.Curve)) {
        for (const std::vector<SvgPoint>& piece : ClippedLine(run, frame_.Box))
          page_.Polyline(piece, *curve.Style.Line);
        // A point without neighbours makes no line, but it must not be lost.
        if (run.size() == 1 && !curve.Style.Marker && frame_.Box.Holds(run.front()))
          page_.Circle(run.front(), curve.Style.Line->Width, curve.Style.Line->Ink);
      }
      page_.EndGroup();
    }
  }

  /// How wide the bins of observed curves are; gives where that ends.
  double DrawInterval(double top) {
    const auto observed = [](const StyledCurve& curve) { return curve.Curve->Role == SeriesRole::Empirical; };
    if (std::none_of(curves_.begin(), curves_.end(), observed)) return top;
    const double baseline = top + kLineFeed * kSmallText;
    page_.Text({kEdge, baseline}, "Empirical interval: " + ZeroedNumber(double(plot_.EmpiricalInterval), 1, 2), {});
    return baseline;
  }

  void DrawMarkers() {
    for (const StyledCurve& curve : curves_) {
      if (!curve.Style.Marker) continue;
      page_.BeginGroup("markers");
      for (const std::vector<SvgPoint>& run : frame_.Runs(*curve.Curve)) {
        for (const SvgPoint point : run) {
          if (frame_.Box.Holds(point)) DrawMarker(page_, point, *curve.Style.Marker);
        }
      }
      page_.EndGroup();
    }
  }

  void DrawYAxis() {
    const SvgBox& box = frame_.Box;
    for (const AxisTick& tick : frame_.Y.Ticks) {
      const double y = box.Bottom - frame_.Y.Share(tick.Value) * box.Height();
      page_.Line({box.Left - (tick.Label.empty() ? kMinorTickLength : kTickLength), y}, {box.Left, y}, kAxisStroke);
      if (tick.Label.empty()) continue;
      page_.Text({box.Left - kTickLength - kTickGap, y + kLetterHeight * kSmallText / 2}, tick.Label,
                 {.Anchor = TextAnchor::End});
    }
    page_.Text({kEdge + kAxisTitleSize * kLetterHeight, (box.Top + box.Bottom) / 2},
               Shortened(DisplayText(AxisTitle(plot_.Kind)), kAxisTitleSize, box.Height()),
               {.Size = kAxisTitleSize, .Anchor = TextAnchor::Middle, .Upright = true});
  }

  /// Gives where the axis ends.
  double DrawXAxis() {
    const SvgBox& box = frame_.Box;
    const double baseline = box.Bottom + kTickLength + kTickGap + kLetterHeight * kSmallText;
    for (const AxisTick& tick : frame_.X.Ticks) {
      const double x = box.Left + frame_.X.Share(tick.Value) * box.Width();
      page_.Line({x, box.Bottom}, {x, box.Bottom + (tick.Label.empty() ? kMinorTickLength : kTickLength)}, kAxisStroke);
      if (tick.Label.empty()) continue;
      // A long last label moves to the left rather than off the page.
      const double farthest = kPageWidth - 0.5 - TextWidth(tick.Label, kSmallText) / 2;
      page_.Text({std::min(x, farthest), baseline}, tick.Label, {.Anchor = TextAnchor::Middle});
    }
    return DrawTextLines(XTitle(), (box.Left + box.Right) / 2, baseline + 0.8, {.Size = kAxisTitleSize});
  }

  /// The unit goes into a line of its own where it has no room behind the title.
  std::vector<std::string> XTitle() const {
    const std::string title(kMeasureAxisTitle);
    if (unit_.empty()) return {title};
    const std::string unit = "in " + DisplayText(unit_);
    const double width = frame_.Box.Width();
    if (TextWidth(title + ", " + unit, kAxisTitleSize) <= width) return {title + ", " + unit};
    return {title + ",", Shortened(unit, kAxisTitleSize, width)};
  }

  const CurvePlot& plot_;
  std::string_view unit_;
  std::vector<StyledCurve> curves_;
  SvgPage page_;
  PlotFrame frame_;
};

}  // namespace

std::string CurvePicture(const CurvePlot& plot, JoinMode join, std::string_view unit) {
  return Picture(plot, join, unit).Draw();
}

}  // namespace tessaly
