#include "graphs/curve_labels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "graphs/curve_style.h"
#include "graphs/display_text.h"

namespace tessaly {

namespace {

constexpr std::size_t kMostLabelled = 16;
constexpr double kLongestLabel = 12;
/// Clear paper around a label.
constexpr double kMargin = 0.35;

struct LabelledCurve {
  std::string Text;
  std::vector<SvgPoint> Points;
};

std::string LabelOf(const Series& curve) {
  const std::size_t colon = curve.Name.rfind(": ");
  if (colon == std::string::npos) return {};
  return Shortened(DisplayText(std::string_view(curve.Name).substr(colon + 2)), kSmallText, kLongestLabel);
}

bool HasPeaks(GraphKind kind) {
  return kind == GraphKind::CategoryProbability || kind == GraphKind::CategoryInformation;
}

bool HasHalves(GraphKind kind) {
  return kind == GraphKind::CumulativeProbability || kind == GraphKind::ConditionalProbability;
}

std::vector<LabelledCurve> CurvesToLabel(const CurvePlot& plot, const PlotFrame& frame) {
  std::vector<LabelledCurve> curves;
  if (!HasPeaks(plot.Kind) && !HasHalves(plot.Kind)) return curves;
  for (const Series& curve : plot.Curves) {
    if (curve.Role != SeriesRole::Model || curve.Points.empty()) continue;
    LabelledCurve& labelled = curves.emplace_back(LabelledCurve{LabelOf(curve), {}});
    for (const std::vector<SvgPoint>& run : frame.Runs(curve)) {
      for (const SvgPoint point : run) {
        if (frame.Box.Holds(point)) labelled.Points.push_back(point);
      }
    }
    if (labelled.Text.empty() || labelled.Points.empty()) curves.pop_back();
  }
  if (curves.size() < 2 || curves.size() > kMostLabelled) curves.clear();
  return curves;
}

/// Finds places for labels, one after the other.
class LabelPlaces {
 public:
  LabelPlaces(const std::vector<LabelledCurve>& curves, const CurvePlot& plot, const PlotFrame& frame)
      : curves_(curves), frame_(frame), halves_(HasHalves(plot.Kind)) {
    for (const Series& curve : plot.Curves) {
      if (curve.Role != SeriesRole::Empirical) continue;
      for (const std::vector<SvgPoint>& run : frame.Runs(curve))
        markers_.insert(markers_.end(), run.begin(), run.end());
    }
  }

  /// The box of the label, on the page.
  std::optional<SvgBox> Find(const LabelledCurve& curve) {
    const std::size_t start = Start(curve.Points);
    const std::size_t reach = curve.Points.size() / 4;
    std::optional<SvgBox> best;
    std::size_t fewest = SIZE_MAX;
    for (std::size_t step = 0; step <= 2 * reach && fewest > 0; ++step) {
      const std::size_t off = (step + 1) / 2;
      if (step % 2 == 1 ? start + off >= curve.Points.size() : off > start) continue;
      const SvgBox box = BoxAt(curve.Points[step % 2 == 1 ? start + off : start - off], curve.Text);
      if (!Free(box)) continue;
      const std::size_t hidden = PointsHidden(curve, box);
      if (hidden < fewest) best = box;
      fewest = std::min(fewest, hidden);
    }
    if (best) taken_.push_back(*best);
    return best;
  }

 private:
  std::size_t Start(const std::vector<SvgPoint>& points) const {
    const double half = (frame_.Box.Top + frame_.Box.Bottom) / 2;
    const auto better = [&](SvgPoint a, SvgPoint b) {
      return halves_ ? std::fabs(a.Y - half) < std::fabs(b.Y - half) : a.Y < b.Y;
    };
    return static_cast<std::size_t>(std::min_element(points.begin(), points.end(), better) - points.begin());
  }

  SvgBox BoxAt(SvgPoint at, const std::string& text) const {
    const double width = TextWidth(text, kSmallText) + 2 * kMargin;
    const double height = kLetterHeight * kSmallText + 2 * kMargin;
    // A peak at the upper end of the axis still gets its label.
    const double y = std::clamp(at.Y, frame_.Box.Top + height / 2 + kMargin, frame_.Box.Bottom - height / 2 - kMargin);
    return {at.X - width / 2, y - height / 2, at.X + width / 2, y + height / 2};
  }

  bool Free(const SvgBox& box) const {
    if (box.Left < frame_.Box.Left + kMargin || box.Right > frame_.Box.Right - kMargin) return false;
    const SvgBox wide{box.Left - kMarkerRadius, box.Top - kMarkerRadius, box.Right + kMarkerRadius,
                      box.Bottom + kMarkerRadius};
    return std::none_of(taken_.begin(), taken_.end(), [&](const SvgBox& other) { return box.Overlaps(other); }) &&
           std::none_of(markers_.begin(), markers_.end(), [&](SvgPoint point) { return wide.Holds(point); });
  }

  /// Points of other curves below a label.
  std::size_t PointsHidden(const LabelledCurve& own, const SvgBox& box) const {
    std::size_t hidden = 0;
    for (const LabelledCurve& other : curves_) {
      if (&other == &own) continue;
      hidden += static_cast<std::size_t>(
          std::count_if(other.Points.begin(), other.Points.end(), [&](SvgPoint point) { return box.Holds(point); }));
    }
    return hidden;
  }

  const std::vector<LabelledCurve>& curves_;
  const PlotFrame& frame_;
  bool halves_;
  std::vector<SvgPoint> markers_;
  std::vector<SvgBox> taken_;
};

}  // namespace

void DrawCurveLabels(SvgPage& page, const CurvePlot& plot, const PlotFrame& frame) {
  const std::vector<LabelledCurve> curves = CurvesToLabel(plot, frame);
  if (curves.empty()) return;
  LabelPlaces places(curves, plot, frame);
  page.BeginGroup("curve-labels");
  for (const LabelledCurve& curve : curves) {
    const std::optional<SvgBox> box = places.Find(curve);
    if (!box) continue;
    page.Rect(*box, kWhite);
    page.Text({(box->Left + box->Right) / 2, box->Bottom - kMargin}, curve.Text, {.Anchor = TextAnchor::Middle});
  }
  page.EndGroup();
}

}  // namespace tessaly
