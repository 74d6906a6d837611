#include "reports/measurement_layout.h"

#include <algorithm>
#include <string_view>

#include "reports/box_line.h"

namespace tessaly {

namespace {

constexpr int kNarrowestLabel = 20;

/// One column group: its piece of each heading and template. "|" stands for the vertical box character.
struct LayoutPiece {
  std::string_view Head1;
  std::string_view Head2;
  std::string_view Normal;
  std::string_view Extreme;
  std::string_view NonActive;
  std::string_view Summary;
};

constexpr LayoutPiece kScores = {R"(|  Obsvd   Obsvd   Obsvd  Fair(M))", R"(|  Score   Count  Average Average)",
                                 R"(|######.# #####.# ####.## ###.## )", R"(|######.# #####.# ####.## ###.## )",
                                 R"(|######.# #####.# ####.##        )", R"(|######.# #####.# ####.## ###.## )"};
constexpr LayoutPiece kMeasure = {R"(|   -    Model )", R"(|Measure  S.E. )", R"(! \    \ \   \ )",
                                  R"(!(\    \ \   \))", R"(! \    \       )", R"(| \    \ \   \ )"};
constexpr LayoutPiece kFit = {R"(| Infit      Outfit    )", R"(| MnSq ZStd  MnSq ZStd )", R"(|##.## ##.# ##.## ##.# )",
                              R"(|\                   \ )", R"(|\                   \ )", R"(|##.## ##.# ##.## ##.# )"};
constexpr LayoutPiece kDiscrimination = {"|Estim.|", "|Discrm|", R"(|\    \|)", "|      |", "|      |", "|      |"};

constexpr LayoutPiece kDisplacement = {"       |", " Displ.|", R"(\    \ |)", "       |", "       |", "       |"};
constexpr LayoutPiece kNoDisplacement = {"", "", "&", "", "", ""};

constexpr LayoutPiece kPointBiserial = {" Corr. |",    " PtBis |",    R"( \   \ |)",
                                        R"( \   \ |)", R"( \   \ |)", R"( \   \ |)"};
constexpr LayoutPiece kPointBiserialIncluding = {" Corr. |",    " PtBisI|",    R"( \   \ |)",
                                                 R"( \   \ |)", R"( \   \ |)", R"( \   \ |)"};
constexpr LayoutPiece kPointMeasure = {" Correlation |",    " PtMea PtExp |",    R"( \   \ \   \ |)",
                                       R"( \   \ \   \ |)", R"( \   \ \   \ |)", R"( \   \ \   \ |)"};
constexpr LayoutPiece kNoCorrelation = {"", "", "&", "&", "&", "&"};

constexpr LayoutPiece kInterRater = {" Exact Agree. |",    " Obs %  Exp % |",    R"( \   \  \   \ |)",
                                     R"( \   \  \   \ |)", R"( \   \  \   \ |)", R"( \   \  \   \ |)"};
constexpr LayoutPiece kNoInterRater = {"", "", "&&", "&&", "&&", "&&"};

constexpr LayoutPiece kGroup = {"       |", " Group |", R"(\    \ |)", R"(\    \ |)", R"(\    \ |)", "g^^^^s |"};
constexpr LayoutPiece kWeight = {"Element|", " Weight|", R"(\    \ |)", R"(\    \ |)", R"(\    \ |)", "       |"};
/// A column of elements alone that is not shown.
constexpr LayoutPiece kNoElementColumn = {"", "", "&", "&", "&", ""};

constexpr bool Aligned(const LayoutPiece& piece) {
  const std::size_t width = piece.Head2.size();
  return piece.Head1.size() == width && piece.Normal.size() == width && piece.Extreme.size() == width &&
         piece.NonActive.size() == width && piece.Summary.size() == width;
}
static_assert(Aligned(kScores) && Aligned(kMeasure) && Aligned(kFit) && Aligned(kDiscrimination) &&
              Aligned(kDisplacement) && Aligned(kPointBiserial) && Aligned(kPointBiserialIncluding) &&
              Aligned(kPointMeasure) && Aligned(kInterRater) && Aligned(kGroup) && Aligned(kWeight));

const LayoutPiece& CorrelationPiece(CorrelationColumns columns) {
  switch (columns) {
    case CorrelationColumns::PointBiserial:
      return kPointBiserial;
    case CorrelationColumns::PointBiserialIncluding:
      return kPointBiserialIncluding;
    case CorrelationColumns::PointMeasure:
      return kPointMeasure;
    case CorrelationColumns::None:
      break;
  }
  return kNoCorrelation;
}

std::vector<LayoutPiece> Pieces(const MeasurementColumns& columns) {
  return {kScores,
          kMeasure,
          kFit,
          kDiscrimination,
          columns.Displacement ? kDisplacement : kNoDisplacement,
          CorrelationPiece(columns.Correlation),
          columns.InterRater ? kInterRater : kNoInterRater,
          columns.Group ? kGroup : kNoElementColumn,
          columns.Weight ? kWeight : kNoElementColumn};
}

void ReplaceWord(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

/// Words of the first heading line that settings decide.
std::string FirstHeading(std::string heading, const MeasurementColumns& columns) {
  if (columns.TotalScore) ReplaceWord(heading, "Obsvd   Obsvd   Obsvd", "Total   Total   Obsvd");
  if (!columns.FairMean) ReplaceWord(heading, "Fair(M)", "Fair(Z)");
  if (columns.Positive) ReplaceWord(heading, "|   -    ", "|   +    ");
  if (columns.RealSE) ReplaceWord(heading, "Model", " Real");
  return heading;
}

std::string RuleOf(std::string_view heading) {
  std::string rule;
  for (const char c : heading) rule += c == '|' ? 'x' : '-';
  return rule;
}

std::string TextField(int width) {
  return "\\" + std::string(static_cast<std::size_t>(width - 2), ' ') + "\\";
}

}  // namespace

MeasurementLayout BuildMeasurementLayout(const MeasurementColumns& columns, const std::string& labelHead,
                                         const TextEncoding& encoding) {
  std::string head1, head2, normal, extreme, nonActive, summary;
  for (const LayoutPiece& piece : Pieces(columns)) {
    head1 += piece.Head1;
    head2 += piece.Head2;
    normal += piece.Normal;
    extreme += piece.Extreme;
    nonActive += piece.NonActive;
    summary += piece.Summary;
  }
  MeasurementLayout layout;
  layout.LabelWidth = std::max(DisplayLength(labelHead, encoding), kNarrowestLabel);
  const std::string label = PadToWidth(labelHead, layout.LabelWidth, encoding);
  const std::string blanks(static_cast<std::size_t>(layout.LabelWidth), ' ');
  const std::string labelRule(static_cast<std::size_t>(layout.LabelWidth) + 1, '-');
  head1 = FirstHeading(head1, columns);
  const std::string rule = RuleOf(head2);
  const auto row = [&](const std::string& fields) {
    return WithVerticals(columns.LeftHand ? "| " + TextField(layout.LabelWidth) + fields + "&"
                                          : "&" + fields + " " + TextField(layout.LabelWidth) + "|");
  };
  if (columns.LeftHand) {
    layout.HeadLines = {WithVerticals("|" + blanks + " " + head1), WithVerticals("| ") + label + WithVerticals(head2)};
    layout.RuleTemplate = "x" + labelRule + rule;
  } else {
    layout.HeadLines = {WithVerticals(head1 + blanks + " |"), WithVerticals(head2 + " ") + label + WithVerticals("|")};
    layout.RuleTemplate = rule + labelRule + "x";
  }
  // Behind each element's row there is room for its subsets.
  layout.RowFmtNormal = row(normal) + "&";
  layout.RowFmtExtreme = row(extreme) + "&";
  layout.RowFmtNonActive = row(nonActive) + "&";
  layout.RowFmtSummary = row(summary);
  return layout;
}

}  // namespace tessaly
