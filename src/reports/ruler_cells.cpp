#include "reports/ruler_cells.h"

#include <algorithm>
#include <utility>

#include "support/number_text.h"

namespace tessaly {

RulerCells::RulerCells(const PlannedColumn& plan, const PlacedFacet& placed, const ElementTable& elements,
                       const TextEncoding& encoding)
    : plan_(plan),
      placed_(plan.Column.Kind == ColumnKind::Labels ? placed.ByLabel : placed.ByNumber),
      elements_(elements),
      encoding_(encoding) {}

void RulerCells::StartLine(std::int32_t line) {
  next_ = end_;
  while (end_ < placed_.size() && placed_[end_].Line == line) ++end_;
}

std::string RulerCells::NextCell() {
  return " " + Text() + " ";
}

std::string RulerCells::Text() {
  if (plan_.ListsElements()) return Listed();
  const std::size_t count = end_ - std::exchange(next_, end_);
  if (plan_.Column.Kind == ColumnKind::Stars) return CutOrPad(Stars(count), plan_.ColumnWidth);
  return RightJustified(count > 0 ? BareText(static_cast<std::int64_t>(count)) : "", plan_.ColumnWidth);
}

std::string RulerCells::Stars(std::size_t count) const {
  const auto perStar = static_cast<std::size_t>(plan_.PerStar);
  return std::string(count / perStar, '*') + (count % perStar > 0 ? "." : "");
}

std::string RulerCells::Listed() {
  const bool numbers = plan_.Column.Kind == ColumnKind::Numbers;
  const int fullWidth = plan_.SlotWidth - plan_.SlotGap;
  std::string cell;
  int used = 0;
  const std::size_t stop = std::min(end_, next_ + static_cast<std::size_t>(plan_.Across));
  for (; next_ < stop; ++next_) {
    const ElementIndex element = placed_[next_].Element;
    const std::string text = numbers ? BareText(elements_.ElementNumber[element]) : elements_.ElementLabel[element];
    const int width = numbers ? fullWidth : std::min(DisplayLength(text, encoding_), fullWidth);
    if (used > 0) cell.append(static_cast<std::size_t>(plan_.SlotGap), ' ');
    used += (used > 0 ? plan_.SlotGap : 0) + width;
    // Each text is fitted on its own: the columns of multi-byte texts are rounded, and do not add up in one piece.
    cell += PadToWidth(text, width, encoding_);
  }
  return cell.append(static_cast<std::size_t>(std::max(plan_.ColumnWidth - used, 0)), ' ');
}

}  // namespace tessaly
