#include "graphs/facet_map_column.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "graphs/display_text.h"
#include "graphs/label_rows.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr double kWidestElements = 30;
constexpr double kBarHeight = 2.2;
constexpr double kBarGap = kThinLine;
constexpr Color kBarFill{120, 160, 190};

/// Labels or numbers.
class LabelColumn : public MapColumn {
 public:
  LabelColumn(std::string heading, std::vector<HeightLabel> labels, const MapAxis& axis)
      : heading_(std::move(heading)),
        labels_(std::move(labels)),
        axis_(axis),
        textWidth_(WidthOfLabels(labels_, kWidestElements)) {
    // Where there are too many rows, longer rows hold more of the labels.
    if (ArrangeLabels(labels_, axis.Top, axis.Bottom, textWidth_).Counted) textWidth_ = kWidestElements;
  }

  std::string Heading() const override { return heading_; }
  double NaturalWidth() const override { return textWidth_ + kLeaderWidth; }
  double LeastWidth() const override { return std::min(NaturalWidth(), 15.0); }
  void Draw(SvgPage& page, double left, double width) override {
    const LabelRows rows = ArrangeLabels(labels_, axis_.Top, axis_.Bottom, width - kLeaderWidth);
    DrawLabelRows(page, rows, left);
    counted_ = rows.Counted;
  }
  std::string Note() const override { return counted_ ? "+ n: n more elements at about this height." : ""; }

 private:
  std::string heading_;
  std::vector<HeightLabel> labels_;
  const MapAxis& axis_;
  double textWidth_;
  bool counted_ = false;
};

/// Counts of measures in stretches of the axis of equal, round length.
struct Bins {
  double First = 0;
  double Width = 1;
  std::vector<std::int32_t> Counts;

  std::int32_t Most() const { return *std::max_element(Counts.begin(), Counts.end()); }
};

Bins Count(const std::vector<double>& measures, const MapAxis& axis, double height) {
  constexpr double kNearly = 1e-6;
  const double range = axis.Scale.High - axis.Scale.Low;
  Bins bins;
  bins.Width = RoundStep(range, axis.Height() / height);
  // Far from 0 multiples of the width may be too coarse.
  const double multiple = std::floor(axis.Scale.Low / bins.Width + kNearly) * bins.Width;
  bins.First = std::fabs(axis.Scale.Low - multiple) < bins.Width ? multiple : axis.Scale.Low;
  const double last = std::max(std::ceil((axis.Scale.High - bins.First) / bins.Width - kNearly), 1.0) - 1;
  bins.Counts.assign(static_cast<std::size_t>(last) + 1, 0);
  for (const double measure : measures) {
    const double bin = std::clamp(std::floor((measure - bins.First) / bins.Width + kNearly), 0.0, last);
    ++bins.Counts[static_cast<std::size_t>(bin)];
  }
  return bins;
}

std::string Text(std::int32_t count) {
  return BareText(count);
}

/// Bars or numbers that count elements.
class CountColumn : public MapColumn {
 public:
  CountColumn(std::string heading, const std::vector<double>& measures, bool bars, const MapAxis& axis)
      : heading_(std::move(heading)),
        bars_(bars),
        axis_(axis),
        bins_(Count(measures, axis, bars ? kBarHeight : kRowPitch)) {}

  std::string Heading() const override { return heading_; }
  double NaturalWidth() const override { return bars_ ? 22 : LeastWidth(); }
  double LeastWidth() const override {
    return std::max(TextWidth(Text(bins_.Most()), kSmallText) + 2 * kInset + (bars_ ? kSmallText : 0),
                    bars_ ? 12.0 : 8.0);
  }
  void Draw(SvgPage& page, double left, double width) override {
    for (std::size_t at = 0; at < bins_.Counts.size(); ++at) {
      if (bins_.Counts[at] > 0) DrawBin(page, at, left, width - kInset);
    }
    if (!bars_) return Foot(page, left + kInset, "Count", TextAnchor::Start);
    const double scale = axis_.Bottom + MapAxis::kMargin + 0.8;
    for (const double x : {left + kThinLine, left + width - kInset}) page.Line({x, scale - 0.4}, {x, scale + 0.4}, {});
    page.Line({left + kThinLine, scale}, {left + width - kInset, scale}, {});
    Foot(page, left, "0", TextAnchor::Start);
    Foot(page, left + width - kInset, Text(bins_.Most()), TextAnchor::End);
  }
  std::string Note() const override {
    if (!bars_) return {};
    return "Bars count elements; the number below stands for the longest bar.";
  }

 private:
  static constexpr double kInset = 1;

  void DrawBin(SvgPage& page, std::size_t at, double left, double width) const {
    const double low = bins_.First + static_cast<double>(at) * bins_.Width;
    const double top = std::max(axis_.YOf(low + bins_.Width), axis_.Top);
    const double bottom = std::min(axis_.YOf(low), axis_.Bottom);
    if (!bars_) {
      return DrawOnPaper(page, {left + kInset, (top + bottom) / 2}, Text(bins_.Counts[at]));
    }
    // The smallest count must still be seen.
    const double length = std::max(width * bins_.Counts[at] / bins_.Most(), kThinLine);
    page.Rect({left, top + kBarGap / 2, left + length, bottom - kBarGap / 2}, kBarFill);
  }

  void Foot(SvgPage& page, double x, const std::string& text, TextAnchor anchor) const {
    page.Text({x, axis_.Bottom + MapAxis::kMargin + kFootHeight - 0.6}, text, {.Anchor = anchor});
  }

  std::string heading_;
  bool bars_;
  const MapAxis& axis_;
  Bins bins_;
};

/// The measure at which an element stands, in user units.
double Standing(const PlacedElement& placed, const RulerAxis& ruler, bool extremesByMeasure, const MapAxis& axis,
                const Analysis& analysis) {
  const ElementStatus status = analysis.Elements.ElementStatus[placed.Element];
  const bool extreme = status == ElementStatus::Minimum || status == ElementStatus::Maximum;
  // On a ruler they have been sent to the end that a negative Uscale= makes theirs.
  if (extreme && !extremesByMeasure) return placed.Line < ruler.LastLine ? axis.Scale.High : axis.Scale.Low;
  const double measure = double(analysis.Settings.UserMeasure(analysis.Elements.ElementMeasure[placed.Element]));
  return std::clamp(measure, axis.Scale.Low, axis.Scale.High);
}

std::string TextOf(ElementIndex element, ColumnKind kind, const ElementTable& elements) {
  const std::string label = kind == ColumnKind::Labels ? DisplayText(elements.ElementLabel[element]) : std::string();
  const std::string_view trimmed = TrimBlanks(label);
  return trimmed.empty() ? BareText(elements.ElementNumber[element]) : std::string(trimmed);
}

}  // namespace

std::unique_ptr<MapColumn> MakeFacetColumn(const FacetColumn& column, const PlacedFacet& placed, const RulerAxis& ruler,
                                           const MapAxis& axis, bool extremesByMeasure, const Analysis& analysis) {
  const Facet& facet = analysis.Facets[column.Facet];
  std::string heading = (facet.ShowsPositive() ? "+" : "\xE2\x88\x92") + DisplayText(facet.FacetLabel);
  const bool labels = column.Kind == ColumnKind::Labels;
  std::vector<HeightLabel> standing;
  std::vector<double> measures;
  for (const PlacedElement& element : labels ? placed.ByLabel : placed.ByNumber) {
    measures.push_back(Standing(element, ruler, extremesByMeasure, axis, analysis));
    if (labels || column.Kind == ColumnKind::Numbers)
      standing.push_back({axis.YOf(measures.back()), TextOf(element.Element, column.Kind, analysis.Elements)});
  }
  if (standing.empty())
    return std::make_unique<CountColumn>(std::move(heading), measures, column.Kind == ColumnKind::Stars, axis);
  std::stable_sort(standing.begin(), standing.end(),
                   [](const HeightLabel& a, const HeightLabel& b) { return a.Y < b.Y; });
  return std::make_unique<LabelColumn>(std::move(heading), std::move(standing), axis);
}

}  // namespace tessaly
