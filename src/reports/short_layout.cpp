#include "reports/short_layout.h"

#include <algorithm>
#include <string_view>

#include "reports/box_line.h"
#include "reports/edit_word.h"

namespace tessaly {

namespace {

constexpr int kNarrowestLabel = 19;
/// "|" stands for the vertical box character.
constexpr std::string_view kBlockHead = "| Cat  Score  Exp.  Resd StRes|";
constexpr std::string_view kBlockRow = R"(|\   \ \   \ \   \ \   \\   \ |)";
static_assert(kBlockHead.size() == kBlockRow.size());

}  // namespace

ShortLayout BuildShortLayout(const std::string& labelHead, bool leftHand, const TextEncoding& encoding) {
  ShortLayout layout;
  layout.LeftHand = leftHand;
  layout.LabelWidth = std::max(DisplayLength(labelHead, encoding), kNarrowestLabel);
  const auto width = static_cast<std::size_t>(layout.LabelWidth);
  const std::string label = PadToWidth(labelHead, layout.LabelWidth, encoding);
  const std::string field = " \\" + std::string(width - 2, ' ') + "\\";
  const std::string blockRule(kBlockHead.size() - 2, '-');
  const std::string labelRule(width, '-');
  if (leftHand) {
    layout.Heading = WithVerticals("| ") + label + WithVerticals(kBlockHead);
    layout.RowFmt = WithVerticals("|" + field + std::string(kBlockRow)) + "&";
    layout.RuleTemplate = "x-" + labelRule + "x" + blockRule + "x";
  } else {
    layout.Heading = WithVerticals(kBlockHead) + " " + label + WithVerticals("|");
    layout.RowFmt = "&" + WithVerticals(std::string(kBlockRow) + field + "|");
    layout.RuleTemplate = "x" + blockRule + "x-" + labelRule + "x";
  }
  return layout;
}

std::string ShortLayout::Row(const std::string& label, const std::array<std::string, 5>& numbers,
                             const TextEncoding& encoding) const {
  EditWord word(RowFmt, encoding);
  word.EditText(LeftHand ? label : "");
  for (const std::string& number : numbers) word.EditText(number);
  return word.EditText(LeftHand ? "" : label).Line();
}

}  // namespace tessaly
