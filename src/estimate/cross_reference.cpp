#include "estimate/cross_reference.h"

#include <cstdint>
#include <new>

#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// 1 GB of them.
constexpr std::size_t kMostEntries = std::size_t{1} << 28;

[[noreturn]] void Refuse(std::int32_t elementCount) {
  throw Halt{FailureCode::TooManyElements, GeneralText(elementCount)};
}

}  // namespace

ElementCrossReference::ElementCrossReference(std::int32_t elementCount, std::int32_t facetCount, const FieldMap& fields)
    : facetCount_(static_cast<std::size_t>(facetCount)) {
  for (const ActivePosition& position : fields.Positions) facets_.push_back(position.PositionFacet);
  const std::size_t entries = static_cast<std::size_t>(elementCount) * facetCount_;
  if (entries > kMostEntries) Refuse(elementCount);
  try {
    entries_.assign(entries, kNoElement);
  } catch (const std::bad_alloc&) {
    Refuse(elementCount);
  }
}

void ElementCrossReference::Add(const Observation& observation) {
  const std::vector<ObservedElement>& elements = observation.Elements;
  for (std::size_t i = 1; i < elements.size(); ++i) {
    const ElementIndex first = elements[i].CurrentElement;
    if (first == kNoElement) continue;
    for (std::size_t j = 0; j < i; ++j) {
      const ElementIndex second = elements[j].CurrentElement;
      if (second == kNoElement) continue;
      Enter(first, facets_[j], second);
      Enter(second, facets_[i], first);
    }
  }
}

void ElementCrossReference::Enter(ElementIndex element, FacetNumber facet, ElementIndex other) {
  ElementIndex& entry = entries_[At(element, facet)];
  if (entry == kNoElement) {
    entry = other;
  } else if (entry != other) {
    entry = kSeveral;
  }
}

}  // namespace tessaly
