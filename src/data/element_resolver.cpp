#include "data/element_resolver.h"

namespace tessaly {
namespace {

bool HasTargets(const Facet& facet, const ElementTable& elements) {
  for (const ElementIndex element : facet.Elements())
    if (elements.ElementStats[element].TargetElement != kUnspecifiedElement) return true;
  return false;
}

}  // namespace

ElementResolver::ElementResolver(FacetTable& facets, const FieldMap& fields, const ElementTable& elements,
                                 std::int32_t nullElement, Console& console)
    : facets_(facets),
      fields_(fields),
      elements_(elements),
      nullElement_(nullElement),
      labels_(facets, elements, console),
      dense_(facets.size()),
      numbersFirst_(facets.size()) {
  for (const FacetNumber number : facets.all()) {
    const Facet& facet = facets[number];
    numbersFirst_[number] = !Takes(number, 'L') || fields.FacetIdentifiers[number][0] == 'N';
    const bool nullInside = nullElement >= facet.FacetLowestNumber && nullElement <= facet.FacetHighestNumber;
    if (!facet.FacetDense || !facet.HasElements() || nullInside || HasTargets(facet, elements)) continue;
    dense_[number] = {facet.FacetLowestNumber, facet.FacetElementCount, facet.FacetFirstElement};
  }
}

bool ElementResolver::Takes(FacetNumber facet, char kind) const {
  if (!fields_.FacetIdentifiers.holds(facet)) return kind == 'N';
  const std::array<char, 2>& kinds = fields_.FacetIdentifiers[facet];
  return kinds[0] == kind || kinds[1] == kind;
}

ElementIndex ElementResolver::FindBySearch(FacetNumber facet, std::int32_t number) {
  Facet& facts = facets_[facet];
  emptyFacet_ = facts.HasElements() || number == nullElement_ ? FacetNumber{0} : facet;
  return FindElementFollow(number, facts, elements_, nullElement_);
}

inline ElementReference ElementResolver::FindByLabel(FacetNumber facet, std::string_view text) {
  const std::optional<ElementIndex> element = labels_.FindLabel(facet, text);
  if (!element) return {};
  if (*element == kNoElement) return {nullElement_, kNoElement};
  const std::int32_t number = elements_.ElementNumber[*element];
  return {number, Find(facet, number)};
}

ResolvedReference ElementResolver::Resolve(FacetNumber facet, std::string_view text) {
  const bool labelsFirst = numbersFirst_[facet] == 0;
  if (labelsFirst) {
    const ElementReference found = FindByLabel(facet, text);
    if (found.Element.value >= 0 || !TakesNumbers(facet)) return {found, {}};
  }
  const bool labelsNext = !labelsFirst && TakesLabels(facet);
  const std::optional<ElementRange> range = ParseElementRange(text);
  if (!range) {
    if (labelsNext) return {FindByLabel(facet, text), {}};
    return {{-1, labelsFirst ? kUnspecifiedElement : kNotAReference}, {}};
  }
  if (range->First != range->Second) return {{}, range};
  const ElementIndex element = Find(facet, range->First);
  if (element == kUnspecifiedElement && labelsNext) return {FindByLabel(facet, text), {}};
  return {{range->First, element}, {}};
}

}  // namespace tessaly
