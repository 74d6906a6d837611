#include "graphs/scale_map_column.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "graphs/display_text.h"
#include "graphs/label_rows.h"
#include "model/inverse_search.h"
#include "reports/reported_scale.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr double kBarWidth = 2.6;
constexpr double kWidestCategories = 26;
constexpr Color kEvenFill{225, 225, 225};
constexpr Stroke kOutline{kBlack, kThinLine, {}};

/// Where one category is expected, on the page.
struct Piece {
  std::int32_t Category = 0;
  double Top = 0;
  double Bottom = 0;
};

class ScalePieces : public MapColumn {
 public:
  ScalePieces(std::string heading, std::vector<Piece> pieces, std::vector<HeightLabel> labels, const MapAxis& axis)
      : heading_(std::move(heading)), pieces_(std::move(pieces)), labels_(std::move(labels)), axis_(axis) {}

  std::string Heading() const override { return heading_; }
  double NaturalWidth() const override {
    return std::max(kBarWidth + kLeaderWidth + WidthOfLabels(labels_, kWidestCategories), 12.0);
  }
  double LeastWidth() const override { return std::min(NaturalWidth(), 13.0); }
  void Draw(SvgPage& page, double left, double width) override {
    for (const Piece& piece : pieces_) {
      page.Rect({left, piece.Top, left + kBarWidth, piece.Bottom}, piece.Category % 2 == 0 ? kEvenFill : kWhite,
                kOutline);
    }
    DrawLabelRows(page, ArrangeLabels(labels_, axis_.Top, axis_.Bottom, width - kBarWidth - kLeaderWidth),
                  left + kBarWidth);
  }

 private:
  std::string heading_;
  std::vector<Piece> pieces_;
  std::vector<HeightLabel> labels_;
  const MapAxis& axis_;
};

/// The pieces of the bar that the axis shows, from the top down.
std::vector<Piece> VisiblePieces(const ReportedScale& scale, const MapAxis& axis, const Settings& settings,
                                 ResponseKernel& kernel) {
  std::vector<Piece> pieces;
  double end = settings.Uscale < 0 ? axis.Top : axis.Bottom;
  for (std::int32_t k = 0; k <= scale.Top; ++k) {
    double next = settings.Uscale < 0 ? axis.Bottom : axis.Top;
    if (k < scale.Top) {
      const float half = static_cast<float>(k) + 0.5F;
      const float logit = MeasureForScore(kernel, scale.Number, scale.Type, scale.Top, half).Measure;
      next =
          std::clamp(axis.YOf(double(settings.Umean) + double(settings.Uscale) * double(logit)), axis.Top, axis.Bottom);
    }
    const Piece piece{k, std::min(end, next), std::max(end, next)};
    end = next;
    constexpr double kShortest = 0.01;
    if (piece.Bottom - piece.Top > kShortest) pieces.push_back(piece);
  }
  if (settings.Uscale > 0) std::reverse(pieces.begin(), pieces.end());
  return pieces;
}

std::string NameOf(const ReportedScale& scale, std::int32_t category, bool withLabels) {
  const std::int32_t raw = scale.RawCategory[static_cast<std::size_t>(category)];
  std::string name = BareText(raw);
  // The entries of a definition begin with category -1.
  const auto entry = static_cast<std::size_t>(raw) + 1;
  if (withLabels && scale.Definition != nullptr && entry < scale.Definition->Categories.size())
    name += " " + DisplayText(scale.Definition->Categories[entry].Label);
  name = TrimBlanks(name);
  return category == 0 || category == scale.Top ? "(" + name + ")" : name;
}

}  // namespace

std::unique_ptr<MapColumn> MakeScaleColumn(ScaleNumber number, std::string heading, bool withLabels,
                                           const MapAxis& axis, const Analysis& analysis, ResponseKernel& kernel) {
  const ReportedScale scale = DescribeScale(number, analysis);
  std::vector<Piece> pieces = VisiblePieces(scale, axis, analysis.Settings, kernel);
  std::vector<HeightLabel> labels;
  for (const Piece& piece : pieces)
    labels.push_back({(piece.Top + piece.Bottom) / 2, NameOf(scale, piece.Category, withLabels)});
  return std::make_unique<ScalePieces>(std::move(heading), std::move(pieces), std::move(labels), axis);
}

}  // namespace tessaly
