#include "reports/element_cell.h"

#include <algorithm>

#include "support/number_text.h"

namespace tessaly {

std::string ElementCell(const Facet& facet, ElementIndex element, const ElementTable& elements, int minimum,
                        const TextEncoding& encoding) {
  if (facet.FacetLabelWidth == 0) return {};
  const int width = std::max(facet.FacetNumberWidth + facet.FacetLabelWidth + 2, minimum);
  if (element == kNoElement) return std::string(static_cast<std::size_t>(width), ' ');
  const std::string number = BareText(elements.ElementNumber[element]);
  return RightJustified(number, facet.FacetNumberWidth) + " " +
         PadToWidth(elements.ElementLabel[element], width - facet.FacetNumberWidth - 1, encoding);
}

std::string FacetHead(const Facet& facet, const TextEncoding& encoding) {
  if (facet.FacetLabelWidth == 0) return {};
  const int width = std::clamp(DisplayLength(facet.FacetLabel, encoding), facet.FacetLabelWidth, kWidestLabel) + 1;
  return CutOrPad("Num", facet.FacetNumberWidth) + " " + PadToWidth(facet.FacetLabel, width, encoding);
}

std::string StatusWord(ElementStatus status) {
  switch (status) {
    case ElementStatus::Anchored:
    case ElementStatus::Active:
      return "Anchored";
    case ElementStatus::Minimum:
      return "Minimum";
    case ElementStatus::Maximum:
      return "Maximum";
    case ElementStatus::Unmeasurable:
      return "Unmeasurable";
    case ElementStatus::OneDatum:
      return "One datum";
    case ElementStatus::Unobserved:
      break;
  }
  return "Unknown";
}

}  // namespace tessaly
