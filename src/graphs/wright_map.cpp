#include "graphs/wright_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

#include "graphs/display_text.h"
#include "graphs/facet_map_column.h"
#include "graphs/label_rows.h"
#include "graphs/map_column.h"
#include "graphs/scale_map_column.h"
#include "reports/model_text.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr double kNarrowPage = 80;
constexpr double kWidePage = 160;
constexpr std::size_t kMostOnNarrowPage = 3;
constexpr double kColumnGap = 1.8;
constexpr double kLowestMap = 95;
constexpr double kHighestPage = 220;
/// Leaves room on the page for all else: a title and headings at their largest, and ten lines of notes.
constexpr double kHighestMap = 160;
constexpr std::size_t kHeadingLines = 2;
/// More have no room on any page.
constexpr std::size_t kMostScaleColumns = 14;
constexpr double kTickSpacing = 7;
constexpr Color kGridInk{222, 222, 222};
constexpr std::string_view kAxisHeading = "Measure";

bool IsWanted(std::string_view vertical) {
  const std::string_view text = TrimLeft(vertical);
  return text.empty() || UpperAscii(text.front()) != 'N';
}

/// High enough for a row for each label of the fullest column.
double MapHeight(const RulerColumns& columns, const PlacedFacets& placed) {
  std::size_t rows = 0;
  for (const FacetColumn& column : columns.Facets) {
    if (column.Kind == ColumnKind::Labels || column.Kind == ColumnKind::Numbers)
      rows = std::max(rows, placed[column.Facet].ByNumber.size());
  }
  return std::clamp(1.15 * kRowPitch * static_cast<double>(rows), kLowestMap, kHighestMap);
}

std::vector<ElementIndex> AllElements(const ElementTable& elements) {
  std::vector<ElementIndex> all;
  all.reserve(static_cast<std::size_t>(elements.ElementCount()));
  for (const ElementIndex element : elements.ElementNumber.all()) all.push_back(element);
  return all;
}

std::string ScaleName(std::size_t at) {
  return "S." + BareText(static_cast<std::int64_t>(at) + 1);
}

/// The name of an only scale; several are told apart by number.
std::string ScaleHeading(std::size_t at, const Analysis& analysis) {
  const std::vector<ScaleNumber>& order = analysis.Scales.ScaleOrder;
  if (order.size() > 1) return ScaleName(at);
  const DefinitionNumber definition =
      analysis.Models.Statements[analysis.Scales.Scales[order[at]].ScaleModel].ModelDefinition;
  const std::string name =
      definition == kNoDefinition ? std::string() : DisplayText(analysis.Models.Definitions[definition].Name);
  return name.empty() ? "Scale" : name;
}

/// Without the mark that reports centre it by.
std::string_view TitleOf(const Settings& settings) {
  std::string_view title = settings.Title;
  if (title.starts_with('^')) title.remove_prefix(1);
  return title;
}

/// Draws one map.
class Map {
 public:
  Map(const RulerColumns& columns, const Yardstick& yardstick, const Analysis& analysis, ResponseKernel& kernel)
      : analysis_(analysis), title_(DisplayText(TitleOf(analysis.Settings))), page_(kNarrowPage) {
    const RulerAxis ruler = FitRulerAxis(columns, yardstick, analysis.Facets, analysis.Elements, analysis.Settings);
    const PlacedFacets placed =
        PlaceElements(AllElements(analysis.Elements), columns, ruler, yardstick.ExtremesByMeasure, analysis);
    // The title has no more lines on a wider page.
    axis_.Top = kEdge +
                kLineFeed * (kTitleSize * static_cast<double>(TitleLines(kNarrowPage).size()) +
                             kSmallText * static_cast<double>(kHeadingLines)) +
                1 + MapAxis::kMargin;
    axis_.Bottom = axis_.Top + MapHeight(columns, placed);
    axis_.Scale = RoundAxis(ruler.Low, ruler.High, axis_.Height() / kTickSpacing);
    AddFacets(columns, placed, ruler, yardstick.ExtremesByMeasure);
    if (columns.Scales != ScaleDisplay::None && !columns_.empty())
      AddScales(columns.Scales == ScaleDisplay::CategoriesAndLabels, kernel);
    LayOut();
  }

  std::string Draw() {
    DrawTitle();
    DrawGrid();
    std::vector<std::string> notes = {UnitNote()};
    double left = axisX_;
    for (std::size_t at = 0; at < columns_.size(); ++at) {
      DrawHeading(columns_[at]->Heading(), left, widths_[at]);
      if (at > 0) page_.Line({left, axis_.Top}, {left, axis_.Bottom}, Stroke{kGridInk, kThinLine, {}});
      columns_[at]->Draw(page_, left, widths_[at]);
      AddNote(columns_[at]->Note(), notes);
      left += widths_[at] + kColumnGap;
    }
    if (columns_.empty()) {
      page_.Text({(axisX_ + page_.Width()) / 2, (axis_.Top + axis_.Bottom) / 2}, "Nothing to draw",
                 {.Size = kTitleSize, .Anchor = TextAnchor::Middle});
    }
    DrawAxis();
    if (leftOut_ > 0)
      AddNote("Columns without room on this page: " + BareText(static_cast<std::int64_t>(leftOut_)) + ".", notes);
    AddModels(notes);
    return page_.Finish(DrawNotes(notes) + kEdge, title_);
  }

 private:
  std::vector<std::string> TitleLines(double width) const {
    return Wrapped(title_, kTitleSize, kBoldRoom * (width - 2 * kEdge), 2);
  }

  void AddFacets(const RulerColumns& columns, const PlacedFacets& placed, const RulerAxis& ruler, bool byMeasure) {
    for (const FacetColumn& column : columns.Facets) {
      const PlacedFacet& facet = placed[column.Facet];
      if (!facet.ByNumber.empty())
        columns_.push_back(MakeFacetColumn(column, facet, ruler, axis_, byMeasure, analysis_));
    }
  }

  void AddScales(bool withLabels, ResponseKernel& kernel) {
    const std::vector<ScaleNumber>& order = analysis_.Scales.ScaleOrder;
    for (std::size_t at = 0; at < order.size(); ++at) {
      // One step has no structure: both its categories are open ends.
      if (analysis_.Scales.Scales[order[at]].ScaleTopCategory <= 1) continue;
      if (scales_.size() == kMostScaleColumns) {
        ++leftOut_;
        continue;
      }
      scales_.push_back(at);
      columns_.push_back(MakeScaleColumn(order[at], ScaleHeading(at, analysis_), withLabels, axis_, analysis_, kernel));
    }
  }

  /// Headings of one word are not broken unless they are long.
  static double Least(const MapColumn& column) {
    constexpr double kLongestWord = 20;
    const double heading = (TextWidth(column.Heading(), kSmallText) + 0.1) / kBoldRoom;
    return std::max(column.LeastWidth(), std::min(heading, kLongestWord));
  }

  /// Finds the width of the page and the columns, and leaves out columns without room.
  void LayOut() {
    double labels = TextWidth(kAxisHeading, kSmallText) / kBoldRoom;
    for (const AxisTick& tick : axis_.Scale.Ticks)
      labels = std::max(labels, TextWidth(tick.Label, kSmallText) + kTickLength + 0.6);
    axisX_ = kEdge + labels;
    std::vector<double> natural;
    std::vector<double> least;
    double used = axisX_ + kEdge;
    for (const std::unique_ptr<MapColumn>& column : columns_) {
      if (used + Least(*column) + kColumnGap > kWidePage) break;
      used += Least(*column) + kColumnGap;
      least.push_back(Least(*column));
      natural.push_back(std::max(column->NaturalWidth(), Least(*column)));
    }
    leftOut_ += columns_.size() - least.size();
    const std::size_t facets = columns_.size() - scales_.size();
    columns_.resize(least.size());
    scales_.resize(std::max(columns_.size(), facets) - facets);
    const double fixed = axisX_ + kEdge + kColumnGap * static_cast<double>(columns_.size());
    const bool narrow = columns_.size() <= kMostOnNarrowPage && used <= kNarrowPage;
    const double wanted = std::accumulate(natural.begin(), natural.end(), fixed);
    const double width = narrow ? kNarrowPage : std::clamp(wanted, std::max(kNarrowPage, used), kWidePage);
    page_ = SvgPage(width);
    widths_ = ShareWidth(natural, least, width - fixed);
  }

  void DrawTitle() {
    double baseline = kEdge + kTitleSize;
    for (const std::string& line : TitleLines(page_.Width())) {
      page_.Text({page_.Width() / 2, baseline}, line, {.Size = kTitleSize, .Anchor = TextAnchor::Middle, .Bold = true});
      baseline += kLineFeed * kTitleSize;
    }
  }

  /// The last line stands above the axis.
  void DrawHeading(const std::string& heading, double left, double width) {
    const std::vector<std::string> lines = Wrapped(heading, kSmallText, kBoldRoom * width, kHeadingLines);
    double baseline = AboveFrame() - kLineFeed * kSmallText * (static_cast<double>(lines.size()) - 1);
    for (const std::string& line : lines) {
      page_.Text({left, baseline}, line, {.Bold = true});
      baseline += kLineFeed * kSmallText;
    }
  }

  double Right() const { return page_.Width() - kEdge; }
  /// Where the lowest heading stands.
  double AboveFrame() const { return axis_.Top - MapAxis::kMargin - 1.2; }

  void DrawGrid() {
    for (const AxisTick& tick : axis_.Scale.Ticks)
      page_.Line({axisX_, axis_.YOf(tick.Value)}, {Right(), axis_.YOf(tick.Value)}, {kGridInk, kThinLine, {}});
  }

  void DrawAxis() {
    const double top = axis_.Top - MapAxis::kMargin;
    const double bottom = axis_.Bottom + MapAxis::kMargin;
    const std::array<SvgPoint, 5> frame = {
        {{axisX_, top}, {Right(), top}, {Right(), bottom}, {axisX_, bottom}, {axisX_, top}}};
    page_.Polyline(frame, {});
    page_.Text({axisX_ - kTickLength, AboveFrame()}, kAxisHeading, {.Anchor = TextAnchor::End, .Bold = true});
    page_.BeginGroup("axis");
    for (const AxisTick& tick : axis_.Scale.Ticks) {
      const double y = axis_.YOf(tick.Value);
      page_.Line({axisX_ - kTickLength, y}, {axisX_, y}, {});
      page_.Text({axisX_ - kTickLength - 0.6, y + kLetterHeight * kSmallText / 2}, tick.Label,
                 {.Anchor = TextAnchor::End});
    }
    page_.EndGroup();
  }

  std::string UnitNote() const {
    const float uscale = analysis_.Settings.Uscale;
    if (uscale == 1) return "Measures in logits.";
    return "Measures in user units: 1 logit = " + BareText(uscale) + ".";
  }

  static void AddNote(const std::string& note, std::vector<std::string>& notes) {
    if (!note.empty() && std::find(notes.begin(), notes.end(), note) == notes.end()) notes.push_back(note);
  }

  void AddModels(std::vector<std::string>& notes) const {
    for (const std::size_t at : scales_) {
      const ScaleNumber scale = analysis_.Scales.ScaleOrder[at];
      notes.push_back(ScaleHeading(at, analysis_) + ": Model = " + DisplayText(ModelText(scale, analysis_)));
    }
  }

  /// As many as the page has room for. Gives where they end.
  double DrawNotes(const std::vector<std::string>& notes) {
    double baseline = axis_.Bottom + MapAxis::kMargin + kFootHeight + kLineFeed * kSmallText;
    for (const std::string& note : notes) {
      for (const std::string& line : Wrapped(note, kSmallText, page_.Width() - 2 * kEdge, 2)) {
        if (baseline > kHighestPage - kLineFeed * kSmallText) break;
        page_.Text({kEdge, baseline}, line, {});
        baseline += kLineFeed * kSmallText;
      }
    }
    return baseline - kSmallText;
  }

  const Analysis& analysis_;
  std::string title_;
  SvgPage page_;
  MapAxis axis_;
  std::vector<std::unique_ptr<MapColumn>> columns_;
  /// Places in the order of the reports.
  std::vector<std::size_t> scales_;
  std::vector<double> widths_;
  double axisX_ = 0;
  std::size_t leftOut_ = 0;
};

}  // namespace

std::string WrightMap(const std::string& vertical, const std::string& yardstick, const Analysis& analysis,
                      ResponseKernel& kernel) {
  if (!IsWanted(vertical)) return {};
  const RulerColumns columns = ParseVertical(SplitRulers(vertical).front(), analysis.Facets);
  return Map(columns, ParseYardstick(SplitRulers(yardstick).front()), analysis, kernel).Draw();
}

}  // namespace tessaly
