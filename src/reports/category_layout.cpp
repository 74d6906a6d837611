#include "reports/category_layout.h"

#include <string_view>

#include "reports/box_line.h"

namespace tessaly {

namespace {

/// One column group: its piece of each line. "|" stands for the vertical box character.
struct LayoutPiece {
  std::string_view Head1;
  std::string_view Head2;
  std::string_view Head3;
  std::string_view First;
  std::string_view Middle;
  std::string_view Top;
  std::string_view NoData;
  std::string_view Rule;
  std::string_view Closing;
};

constexpr LayoutPiece kCounts = {R"(|           DATA                 |   QUALITY CONTROL |)",
                                 R"(|      Category Counts       Cum.|  Avge  Exp. OUTFIT|)",
                                 R"(|Score Total      Used    %    % |  Meas  Meas  MnSq |)",
                                 R"(|### \      \  \      \ \ \% \ \%|\                 \|)",
                                 R"(|### \      \  \      \ \ \% \ \%|\                 \|)",
                                 R"(|### \      \  \      \ \ \% \ \%|\                 \|)",
                                 R"(|### \      \                    |                   |)",
                                 R"(x--------------------------------x-------------------x)",
                                 R"(x--------------------------------x-------------------x)"};

constexpr LayoutPiece kCountsOfBoth = {R"(|               DATA                |   QUALITY CONTROL |)",
                                       R"(|Category      Counts           Cum.|  Avge  Exp. OUTFIT|)",
                                       R"(|   Score  Total     Used    %    % |  Meas  Meas  MnSq |)",
                                       R"(|### ### \      \ \      \ \ \% \ \%|\                 \|)",
                                       R"(|### ### \      \ \      \ \ \% \ \%|\                 \|)",
                                       R"(|### ### \      \ \      \ \ \% \ \%|\                 \|)",
                                       R"(|###     \      \                   |                   |)",
                                       R"(x-----------------------------------x-------------------x)",
                                       R"(x-----------------------------------x-------------------x)"};

constexpr LayoutPiece kThresholds = {R"(RASCH-ANDRICH|  EXPECTATION  |  MOST  |  RASCH-  | Cat|)",
                                     R"( Thresholds  |  Measure at   |PROBABLE| THURSTONE|PEAK|)",
                                     R"(Measure  S.E.|Category  -0.5 |  from  |Thresholds|Prob|)",
                                     R"(             |(\    \)       |   low  |   low    |100%|)",
                                     R"(\    \! \   \| \    \  \    \|\      \|\       \ |###%|)",
                                     R"(\    \! \   \|(\    \) \    \|\      \|\       \ |100%|)",
                                     R"(             |               |        |          |    |)",
                                     R"(-------------x---------------x--------x----------x----x)",
                                     R"(-------------x--(Mean)-------x-(Modal)--(Median)-x----x)"};

constexpr LayoutPiece kResidual = {" Obsd-Expd|",    "Diagnostic|", " Residual |", R"(\        \|)", R"(\        \|)",
                                   R"(\        \|)", "          |", "----------x", "----------x"};

constexpr bool BarsMeetRule(std::string_view line, std::string_view rule) {
  if (line.size() != rule.size()) return false;
  for (std::size_t at = 0; at < rule.size(); ++at)
    if ((line[at] == '|') != (rule[at] == 'x')) return false;
  return true;
}
constexpr bool Aligned(const LayoutPiece& piece) {
  for (const std::string_view line :
       {piece.Head1, piece.Head2, piece.Head3, piece.First, piece.Middle, piece.Top, piece.NoData})
    if (!BarsMeetRule(line, piece.Rule)) return false;
  return piece.Closing.size() == piece.Rule.size();
}
static_assert(Aligned(kCounts) && Aligned(kCountsOfBoth) && Aligned(kThresholds) && Aligned(kResidual));

void Append(const LayoutPiece& piece, bool namedRule, CategoryLayout& layout) {
  constexpr std::size_t kHeadings = 3;
  layout.HeadLines.resize(kHeadings);
  layout.HeadLines[0] += WithVerticals(piece.Head1);
  layout.HeadLines[1] += WithVerticals(piece.Head2);
  layout.HeadLines[2] += WithVerticals(piece.Head3);
  layout.RowFmtFirst += WithVerticals(piece.First);
  layout.RowFmtMiddle += WithVerticals(piece.Middle);
  layout.RowFmtTop += WithVerticals(piece.Top);
  layout.RowFmtNoData += WithVerticals(piece.NoData);
  layout.RuleTemplate += piece.Rule;
  layout.ClosingRule += namedRule ? piece.Closing : piece.Rule;
}

/// The column of labels on one side of what is there.
void AddNames(const CategoryColumns& columns, CategoryLayout& layout) {
  const auto add = [&](const std::string& column, char bar, std::string& line) {
    line = columns.LeftHand ? bar + column + line : line + column + bar;
  };
  constexpr std::string_view kHeadings[] = {"Response", "Category", "  Name"};
  std::size_t at = 0;
  for (std::string& line : layout.HeadLines)
    add(CutOrPad(kHeadings[at++], columns.NameWidth + 1), box::kVertical, line);
  const auto width = static_cast<std::size_t>(columns.NameWidth);
  const std::string field = " \\" + std::string(width - 2, ' ') + "\\";
  for (std::string* row : {&layout.RowFmtFirst, &layout.RowFmtMiddle, &layout.RowFmtTop, &layout.RowFmtNoData})
    add(field, box::kVertical, *row);
  for (std::string* rule : {&layout.RuleTemplate, &layout.ClosingRule}) add(std::string(width + 1, '-'), 'x', *rule);
}

}  // namespace

CategoryLayout BuildCategoryLayout(const CategoryColumns& columns) {
  CategoryLayout layout;
  Append(columns.ShowBoth ? kCountsOfBoth : kCounts, columns.Structure, layout);
  if (columns.Thresholds) Append(kThresholds, columns.Structure, layout);
  if (columns.Thresholds && columns.Residual) Append(kResidual, columns.Structure, layout);
  if (columns.NameWidth > 0) AddNames(columns, layout);
  return layout;
}

}  // namespace tessaly
