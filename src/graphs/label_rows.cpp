#include "graphs/label_rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "graphs/display_text.h"
#include "graphs/row_spread.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr Color kLeaderInk{110, 110, 110};
constexpr double kTickWidth = 0.8;
/// Heights no further apart than this look the same.
constexpr double kSameHeight = 0.15;
/// A row further from its height is hard to follow, and this far it is lost: better to count labels than to go there.
constexpr double kFarShift = 7;
constexpr double kFarthestShift = 18;

/// How labels may be gathered.
struct Gathering {
  /// Heights of a group, from its first label on.
  double Span = 0;
  std::size_t LinesPerGroup = 1;
};

/// From the clearest to the one that always has room.
constexpr std::array<Gathering, 10> kGatherings = {{{kSameHeight, 8},
                                                    {kSameHeight, 3},
                                                    {kSameHeight, 1},
                                                    {0.5, 2},
                                                    {0.5, 1},
                                                    {0.8, 1},
                                                    {1.2, 1},
                                                    {1.8, 1},
                                                    {2.5, 1},
                                                    {1.1 * kRowPitch, 1}}};

std::vector<LabelGroup> Grouped(const std::vector<HeightLabel>& labels, double span) {
  std::vector<LabelGroup> groups;
  double sum = 0;
  for (std::size_t at = 0; at < labels.size(); ++at) {
    const double y = labels[at].Y;
    if (groups.empty() || y - groups.back().Top > span) {
      groups.push_back({at, at, y, y, y});
      sum = 0;
    }
    LabelGroup& group = groups.back();
    group.End = at + 1;
    group.Bottom = y;
    sum += y;
    group.Mean = sum / static_cast<double>(group.End - group.First);
  }
  return groups;
}

/// The texts of one group, as many as have room.
class GroupText {
 public:
  GroupText(const std::vector<HeightLabel>& labels, const LabelGroup& group, double width)
      : labels_(labels), group_(group), width_(width), next_(group.First) {}

  std::vector<std::string> Lines(std::size_t most) {
    std::vector<std::string> lines;
    while (next_ < group_.End && lines.size() < most) lines.push_back(NextLine(lines.size() + 1 == most));
    return lines;
  }
  /// Labels that had no room.
  std::size_t Left() const { return group_.End - next_; }

 private:
  std::string NextLine(bool last) {
    const std::size_t start = next_;
    std::string line = Joined(width_);
    if (!last || next_ == group_.End) return line;
    next_ = start;
    const std::string longest = Count(Left());
    line = Joined(width_ - TextWidth(longest, kSmallText));
    return line + (Left() > 0 ? Count(Left()) : std::string());
  }

  static std::string Count(std::size_t labels) { return " +" + BareText(static_cast<std::int64_t>(labels)); }

  /// At least one label, shortened if need be, and as many more as fit whole.
  std::string Joined(double width) {
    std::string line = ShortenedInside(labels_[next_++].Text, kSmallText, width);
    double used = TextWidth(line, kSmallText);
    for (; next_ < group_.End; ++next_) {
      const std::string more = ", " + labels_[next_].Text;
      used += TextWidth(more, kSmallText);
      if (used > width) break;
      line += more;
    }
    return line;
  }

  const std::vector<HeightLabel>& labels_;
  const LabelGroup& group_;
  double width_;
  std::size_t next_;
};

LabelRows Compose(const std::vector<HeightLabel>& labels, const Gathering& gathering, double width) {
  LabelRows result;
  result.Groups = Grouped(labels, gathering.Span);
  for (const LabelGroup& group : result.Groups) {
    GroupText text(labels, group, width);
    for (std::string& line : text.Lines(gathering.LinesPerGroup))
      result.Rows.push_back({group.Mean, group.Mean, std::move(line)});
    result.Counted = result.Counted || text.Left() > 0;
  }
  return result;
}

/// Gives how far a row is from its height; endless if there is no room for all.
double Spread(std::vector<LabelRow>& rows, double top, double bottom) {
  std::vector<double> wanted;
  for (const LabelRow& row : rows) wanted.push_back(row.Wanted);
  const std::vector<double> places = SpreadRows(wanted, kRowPitch, top, bottom);
  double farthest = 0;
  for (std::size_t at = 0; at < rows.size(); ++at) {
    rows[at].Y = places[at];
    farthest = std::max(farthest, std::fabs(places[at] - wanted[at]));
  }
  const bool fits = places.empty() || places.back() < bottom + kSameHeight;
  return fits ? farthest : std::numeric_limits<double>::infinity();
}

}  // namespace

LabelRows ArrangeLabels(const std::vector<HeightLabel>& labels, double top, double bottom, double width) {
  LabelRows rows;
  // The clearest way that shows all labels near their heights; failing that, further off, or with some of them counted.
  for (const auto& [shift, mayCount] : {std::pair(kFarShift, false), {kFarthestShift, false}, {kFarShift, true}}) {
    for (const Gathering& gathering : kGatherings) {
      rows = Compose(labels, gathering, width);
      if (Spread(rows.Rows, top, bottom) <= shift && (mayCount || !rows.Counted)) return rows;
    }
  }
  return rows;
}

double WidthOfLabels(const std::vector<HeightLabel>& labels, double most) {
  double widest = 0;
  for (const LabelGroup& group : Grouped(labels, kSameHeight)) {
    double width = 0;
    for (std::size_t at = group.First; at < group.End && width < most; ++at)
      width += TextWidth(at > group.First ? ", " + labels[at].Text : labels[at].Text, kSmallText);
    widest = std::max(widest, width);
  }
  // A text that fits exactly must not fail by its last bit.
  return std::min(widest + 0.01, most);
}

void DrawOnPaper(SvgPage& page, SvgPoint at, const std::string& text) {
  constexpr double kPaperMargin = 0.3;
  const double half = kLetterHeight * kSmallText / 2;
  page.Rect({at.X - kPaperMargin, at.Y - half - kPaperMargin, at.X + TextWidth(text, kSmallText) + kPaperMargin,
             at.Y + half + kPaperMargin},
            kWhite);
  page.Text({at.X, at.Y + half}, text, {});
}

void DrawLabelRows(SvgPage& page, const LabelRows& rows, double left) {
  const Stroke leader{kLeaderInk, kThinLine, {}};
  const double bend = left + kTickWidth;
  for (const LabelGroup& group : rows.Groups) {
    if (group.Bottom - group.Top > kSameHeight) page.Line({bend, group.Top}, {bend, group.Bottom}, leader);
  }
  for (const LabelRow& row : rows.Rows) {
    const std::array<SvgPoint, 3> line = {{{left, row.Wanted}, {bend, row.Wanted}, {left + kLeaderWidth - 0.5, row.Y}}};
    page.Polyline(line, leader);
    DrawOnPaper(page, {left + kLeaderWidth, row.Y}, row.Text);
  }
}
}  // namespace tessaly
