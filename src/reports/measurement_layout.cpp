#include "reports/measurement_layout.h"

#include <algorithm>
#include <string_view>

#include "reports/box_line.h"

namespace tessaly {

namespace {

constexpr int kNarrowestLabelColumn = 20;

/// One column group: its piece of each heading and template. "|" stands for the vertical box character.
struct ColumnGroup {
  std::string_view Head1;
  std::string_view Head2;
  std::string_view Normal;
  std::string_view Extreme;
  std::string_view NonActive;
  std::string_view Summary;
};

constexpr ColumnGroup kScores = {R"(|  Obsvd   Obsvd   Obsvd  Fair(M))", R"(|  Score   Count  Average Average)",
                                 R"(|######.# #####.# ####.## ###.## )", R"(|######.# #####.# ####.## ###.## )",
                                 R"(|######.# #####.# ####.##        )", R"(|######.# #####.# ####.## ###.## )"};
constexpr ColumnGroup kMeasure = {R"(|   -    Model )", R"(|Measure  S.E. )", R"(! \    \ \   \ )",
                                  R"(!(\    \ \   \))", R"(! \    \       )", R"(| \    \ \   \ )"};
constexpr ColumnGroup kFit = {R"(| Infit      Outfit    )", R"(| MnSq ZStd  MnSq ZStd )", R"(|##.## ##.# ##.## ##.# )",
                              R"(|\                   \ )", R"(|\                   \ )", R"(|##.## ##.# ##.## ##.# )"};
constexpr ColumnGroup kDiscrimination = {"|Estim.|", "|Discrm|", R"(|\    \|)", "|      |", "|      |", "|      |"};

constexpr ColumnGroup kDisplacement = {"       |", " Displ.|", R"(\    \ |)", "       |", "       |", "       |"};
constexpr ColumnGroup kNoDisplacement = {"", "", "&", "", "", ""};

constexpr ColumnGroup kPointBiserial = {" Corr. |",    " PtBis |",    R"( \   \ |)",
                                        R"( \   \ |)", R"( \   \ |)", R"( \   \ |)"};
constexpr ColumnGroup kPointBiserialIncluding = {" Corr. |",    " PtBisI|",    R"( \   \ |)",
                                                 R"( \   \ |)", R"( \   \ |)", R"( \   \ |)"};
constexpr ColumnGroup kPointMeasure = {" Correlation |",    " PtMea PtExp |",    R"( \   \ \   \ |)",
                                       R"( \   \ \   \ |)", R"( \   \ \   \ |)", R"( \   \ \   \ |)"};
constexpr ColumnGroup kNoCorrelation = {"", "", "&", "&", "&", "&"};

constexpr ColumnGroup kInterRater = {" Exact Agree. |",    " Obs %  Exp % |",    R"( \   \  \   \ |)",
                                     R"( \   \  \   \ |)", R"( \   \  \   \ |)", R"( \   \  \   \ |)"};
constexpr ColumnGroup kNoInterRater = {"", "", "&&", "&&", "&&", "&&"};

constexpr ColumnGroup kGroup = {"       |", " Group |", R"(\    \ |)", R"(\    \ |)", R"(\    \ |)", "g^^^^s |"};
constexpr ColumnGroup kWeight = {"Element|", " Weight|", R"(\    \ |)", R"(\    \ |)", R"(\    \ |)", "       |"};
/// A column of elements alone that is not shown.
constexpr ColumnGroup kNoElementColumn = {"", "", "&", "&", "&", ""};

/// The mark of an adjusted score stands between size and error.
constexpr ColumnGroup kBias = {R"(|Observd  Expctd  Observd  Obs-Exp| Bias~  Model                    |Infit Outfit|)",
                               R"(|  Score   Score    Count  Average|  Size   S.E.     t   d.f. Prob. | MnSq  MnSq |)",
                               R"(|#####.# #####.## #####.#   \    \| \    \!\   \ \    \\    \ \   \ |###.# ###.# |)",
                               "",
                               "",
                               R"(|#####.# #####.## #####.#   \    \| \    \ \   \ \    \             |###.# ###.# |)"};
static_assert(kBias.Head1.size() == kBias.Head2.size() && kBias.Head1.size() == kBias.Normal.size() &&
              kBias.Head1.size() == kBias.Summary.size());

constexpr bool GroupAligned(const ColumnGroup& piece) {
  const std::size_t width = piece.Head2.size();
  return piece.Head1.size() == width && piece.Normal.size() == width && piece.Extreme.size() == width &&
         piece.NonActive.size() == width && piece.Summary.size() == width;
}
static_assert(GroupAligned(kScores) && GroupAligned(kMeasure) && GroupAligned(kFit) && GroupAligned(kDiscrimination) &&
              GroupAligned(kDisplacement) && GroupAligned(kPointBiserial) && GroupAligned(kPointBiserialIncluding) &&
              GroupAligned(kPointMeasure) && GroupAligned(kInterRater) && GroupAligned(kGroup) &&
              GroupAligned(kWeight));

const ColumnGroup& CorrelationPiece(CorrelationColumns columns) {
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

std::vector<ColumnGroup> Pieces(const MeasurementColumns& columns) {
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

/// The pieces side by side.
struct JoinedPieces {
  std::string Head1, Head2, Normal, Extreme, NonActive, Summary;

  void Add(const ColumnGroup& piece) {
    Head1 += piece.Head1;
    Head2 += piece.Head2;
    Normal += piece.Normal;
    Extreme += piece.Extreme;
    NonActive += piece.NonActive;
    Summary += piece.Summary;
  }
};

MeasurementLayout WithLabels(const JoinedPieces& columns, const LabelColumn& label, const TextEncoding& encoding) {
  MeasurementLayout layout;
  layout.LabelWidth = std::max(DisplayLength(label.Head2, encoding), kNarrowestLabelColumn);
  const std::string head1 = PadToWidth(label.Head1, layout.LabelWidth, encoding);
  const std::string head2 = PadToWidth(label.Head2, layout.LabelWidth, encoding);
  const std::string labelRule(static_cast<std::size_t>(layout.LabelWidth) + 1, '-');
  const std::string rule = RuleOf(columns.Head2);
  const std::string field = " " + TextField(layout.LabelWidth);
  const auto row = [&](const std::string& fields) {
    return label.LeftHand ? WithVerticals("|" + field + fields) + "&" : "&" + WithVerticals(fields + field + "|");
  };
  if (label.LeftHand) {
    layout.HeadLines = {WithVerticals("| ") + head1 + WithVerticals(columns.Head1),
                        WithVerticals("| ") + head2 + WithVerticals(columns.Head2)};
    layout.RuleTemplate = "x" + labelRule + rule;
  } else {
    layout.HeadLines = {WithVerticals(columns.Head1 + " ") + head1 + WithVerticals("|"),
                        WithVerticals(columns.Head2 + " ") + head2 + WithVerticals("|")};
    layout.RuleTemplate = rule + labelRule + "x";
  }
  layout.RowFmtNormal = row(columns.Normal);
  layout.RowFmtExtreme = row(columns.Extreme);
  layout.RowFmtNonActive = row(columns.NonActive);
  layout.RowFmtSummary = row(columns.Summary);
  return layout;
}

}  // namespace

MeasurementLayout BuildBiasLayout(const LabelColumn& label, const TextEncoding& encoding) {
  JoinedPieces columns;
  columns.Add(kBias);
  return WithLabels(columns, label, encoding);
}

MeasurementLayout BuildMeasurementLayout(const MeasurementColumns& columns, const std::string& labelHead,
                                         const TextEncoding& encoding) {
  JoinedPieces joined;
  for (const ColumnGroup& piece : Pieces(columns)) joined.Add(piece);
  joined.Head1 = FirstHeading(joined.Head1, columns);
  MeasurementLayout layout = WithLabels(joined, {"", labelHead, columns.LeftHand}, encoding);
  // Behind each element's row there is room for its subsets.
  for (std::string* const rowFmt : {&layout.RowFmtNormal, &layout.RowFmtExtreme, &layout.RowFmtNonActive})
    *rowFmt += "&";
  return layout;
}

}  // namespace tessaly
