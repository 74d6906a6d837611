#include "graphs/curve_legend.h"

#include <algorithm>
#include <numeric>

#include "graphs/display_text.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr double kRowHeight = 3.3;
constexpr double kSampleWidth = 6.5;
constexpr double kSampleGap = 1.2;
constexpr double kLegendGap = 3;
constexpr std::size_t kMostEntries = 36;
constexpr std::size_t kMostColumns = 4;

void DrawSample(SvgPage& page, const StyledCurve& entry, double left, double middle) {
  const double right = left + kSampleWidth;
  const auto role = entry.Curve->Role;
  double y = middle;
  if (role == SeriesRole::UpperBound || role == SeriesRole::LowerBound) {
    // The band lies below its upper bound and above its lower one.
    constexpr double kHalf = 0.9;
    page.Rect({left, middle - kHalf, right, middle + kHalf}, kBandFill);
    y += role == SeriesRole::UpperBound ? -kHalf : kHalf;
  }
  if (entry.Style.Line) page.Line({left, y}, {right, y}, *entry.Style.Line);
  if (entry.Style.Marker) DrawMarker(page, {(left + right) / 2, y}, *entry.Style.Marker);
}

/// Entries run down the columns.
struct LegendGrid {
  std::size_t Rows = 0;
  /// What each column takes, with the gap behind it.
  std::vector<double> Widths;
};

LegendGrid GridOf(const std::vector<std::string>& names, std::size_t columns) {
  LegendGrid grid;
  grid.Rows = (names.size() + columns - 1) / columns;
  for (std::size_t at = 0; at < names.size(); ++at) {
    if (at % grid.Rows == 0) grid.Widths.push_back(0);
    const double width = kSampleWidth + kSampleGap + TextWidth(names[at], kSmallText) + kLegendGap;
    grid.Widths.back() = std::max(grid.Widths.back(), width);
  }
  return grid;
}

/// The grid of most columns that is no wider than `width`; one column if none is.
LegendGrid PlanGrid(const std::vector<std::string>& names, double width) {
  for (std::size_t columns = std::min(kMostColumns, names.size()); columns > 1; --columns) {
    const LegendGrid grid = GridOf(names, columns);
    if (std::accumulate(grid.Widths.begin(), grid.Widths.end(), -kLegendGap) <= width) return grid;
  }
  return GridOf(names, 1);
}

}  // namespace

double DrawLegend(SvgPage& page, std::span<const StyledCurve> curves, double left, double right, double top) {
  const std::size_t shown = curves.size() > kMostEntries ? kMostEntries - 1 : curves.size();
  std::vector<std::string> names;
  for (const StyledCurve& entry : curves.first(shown)) {
    const std::string name = DisplayText(entry.Curve->Name);
    names.push_back(Shortened(name, kSmallText, right - left - kSampleWidth - kSampleGap));
  }
  if (shown < curves.size())
    names.push_back("and " + BareText(static_cast<std::int64_t>(curves.size() - shown)) + " more curves");
  if (names.empty()) return top;
  const LegendGrid grid = PlanGrid(names, right - left);
  page.BeginGroup("legend");
  double x = left;
  for (std::size_t at = 0; at < names.size(); ++at) {
    if (at > 0 && at % grid.Rows == 0) x += grid.Widths[at / grid.Rows - 1];
    const double middle = top + (static_cast<double>(at % grid.Rows) + 0.5) * kRowHeight;
    if (at < shown) DrawSample(page, curves[at], x, middle);
    page.Text({x + kSampleWidth + kSampleGap, middle + kLetterHeight * kSmallText / 2}, names[at], {});
  }
  page.EndGroup();
  return top + static_cast<double>(grid.Rows) * kRowHeight;
}

}  // namespace tessaly
