#include "spec/element_lookup.h"

#include <algorithm>
#include <string>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

ElementIndex Remember(std::int32_t number, ElementIndex element, Facet& facet) {
  facet.FacetCacheNumber = number;
  facet.FacetCacheRecord = element;
  return element;
}

/// Binary search among the records of a facet, whose numbers ascend.
ElementIndex SearchElement(std::int32_t number, Facet& facet, const ElementTable& elements) {
  ElementIndex low = facet.FacetFirstElement;
  ElementIndex high = facet.FacetLastElement;
  while (low < high) {
    const ElementIndex middle = low + (high.value - low.value) / 2;
    if (elements.ElementNumber[middle] < number) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return elements.ElementNumber[low] == number ? Remember(number, low, facet) : kUnspecifiedElement;
}

/// Digits that are never too many for 64 bits.
constexpr std::size_t kMostPlainDigits = 18;

bool AllDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

}  // namespace

ElementIndex FindElement(std::int32_t number, Facet& facet, const ElementTable& elements, std::int32_t nullElement) {
  if (number == nullElement) return kNoElement;
  if (!facet.HasElements()) return kUnspecifiedElement;
  if (number < facet.FacetLowestNumber || number > facet.FacetHighestNumber) return kUnspecifiedElement;
  if (facet.FacetDense) return facet.FacetFirstElement + (number - facet.FacetLowestNumber);
  if (number == facet.FacetCacheNumber) return facet.FacetCacheRecord;
  if (number == facet.FacetHighestNumber) return facet.FacetLastElement;
  if (number == facet.FacetLowestNumber) return facet.FacetFirstElement;
  return SearchElement(number, facet, elements);
}

ElementIndex FindElementFollow(std::int32_t number, Facet& facet, const ElementTable& elements,
                               std::int32_t nullElement) {
  const ElementIndex element = FindElement(number, facet, elements, nullElement);
  if (element <= kNoElement) return element;
  const ElementIndex target = elements.ElementStats[element].TargetElement;
  return target == kUnspecifiedElement ? element : target;
}

std::optional<std::int32_t> ParseElementNumber(std::string_view text) {
  if (AllDigits(text) && text.size() <= kMostPlainDigits) {
    std::int64_t number = 0;
    for (const char digit : text) number = 10 * number + (digit - '0');
    if (number > kHighestElementNumber) return {};
    return static_cast<std::int32_t>(number);
  }
  const double number = LeadingNumber(text);
  if (!(number >= 0 && number <= kHighestElementNumber)) return {};
  const auto whole = static_cast<std::int32_t>(number);
  if (number != whole) return {};
  if (whole == 0 && (TrimLeft(text).empty() || !IsDigit(TrimLeft(text).front()))) return {};
  return whole;
}

std::optional<ElementRange> ParseElementRange(std::string_view text) {
  const std::size_t hyphen = text.find_first_of("-_");
  const std::optional<std::int32_t> first = ParseElementNumber(text.substr(0, hyphen));
  if (!first) return {};
  if (hyphen == std::string_view::npos) return ElementRange{*first, *first};
  const std::optional<std::int32_t> second = ParseElementNumber(text.substr(hyphen + 1));
  if (!second) return {};
  return ElementRange{*first, *second};
}

}  // namespace tessaly
