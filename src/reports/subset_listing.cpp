#include "reports/subset_listing.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "reports/ruler_elements.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::int32_t kLineWidth = 80;
constexpr std::string_view kFacetIndent = "  ";
constexpr std::string_view kElementIndent = "    ";

std::string NumberAndLabel(std::int32_t number, const std::string& label) {
  const std::string text = BareText(number);
  return label == text || label.empty() ? text : text + " " + label;
}

/// Joins texts with commas in lines that are not too long.
class ListLines {
 public:
  explicit ListLines(std::string start, const TextEncoding& encoding) : line_(std::move(start)), encoding_(encoding) {
    width_ = DisplayLength(line_, encoding_);
  }

  void Add(const std::string& item) {
    const std::int32_t width = DisplayLength(item, encoding_);
    if (!first_) line_ += ',';
    // A blank in front of the item, and a comma behind it.
    if (width_ + width + 2 > kLineWidth) {
      lines_.push_back(std::exchange(line_, std::string(kElementIndent)));
      width_ = static_cast<std::int32_t>(kElementIndent.size());
    } else {
      line_ += ' ';
    }
    line_ += item;
    width_ += width + 2;
    first_ = false;
  }

  std::vector<std::string> Lines() && {
    lines_.push_back(std::move(line_));
    return std::move(lines_);
  }

 private:
  std::string line_;
  const TextEncoding& encoding_;
  std::int32_t width_ = 0;
  bool first_ = true;
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::vector<ElementIndex>> ElementsBySubset(const SubsetTable& subsets) {
  std::vector<std::vector<ElementIndex>> members(static_cast<std::size_t>(subsets.SubsetCount));
  for (const ElementIndex element : subsets.ElementSubsets.all()) {
    for (const std::int32_t subset : subsets.ElementSubsets[element])
      members[static_cast<std::size_t>(subset) - 1].push_back(element);
  }
  return members;
}

std::vector<std::string> SubsetLines(std::int32_t number, const std::vector<ElementIndex>& members,
                                     const Analysis& analysis) {
  const ElementTable& elements = analysis.Elements;
  std::vector<std::string> lines = {"Subset" + GeneralText(number) + ":"};
  for (const FacetNumber facetNumber : analysis.Facets.all()) {
    const Facet& facet = analysis.Facets[facetNumber];
    const std::span<const ElementIndex> ofFacet = ElementsOf(facet, members);
    if (ofFacet.empty()) continue;
    ListLines list(std::string(kFacetIndent) + NumberAndLabel(facetNumber.value, facet.FacetLabel) + ":",
                   analysis.Settings.Encoding);
    for (const ElementIndex element : ofFacet)
      list.Add(NumberAndLabel(elements.ElementNumber[element], elements.ElementLabel[element]));
    std::ranges::move(std::move(list).Lines(), std::back_inserter(lines));
  }
  return lines;
}

}  // namespace tessaly
