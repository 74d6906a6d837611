// One element reference of a data line, by number or by label, to the record of the element.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "spec/element_lookup.h"
#include "spec/label_lookup.h"
#include "state/elements.h"
#include "state/facets.h"
#include "support/host.h"

namespace tessaly {

/// What a text in a data column refers to.
struct ElementReference {
  /// Number as written, or that of the element whose label it is; -1 if there is none.
  std::int32_t Number = -1;
  /// Record, or `kUnspecifiedElement`, `kNotAReference`, `kUnderivable`.
  ElementIndex Element = kUnspecifiedElement;
};

/// An element, or the two ends of a range of element numbers.
struct ResolvedReference {
  ElementReference Single;
  std::optional<ElementRange> Range;
};

/// A facet whose numbers map to records by subtraction; none do as long as `Count` is 0.
struct DenseNumbers {
  std::int32_t Lowest = 0;
  std::int32_t Count = 0;
  ElementIndex First{0};

  /// Record of element `number`, or `kUnspecifiedElement`.
  ElementIndex Find(std::int32_t number) const {
    // As unsigned numbers those below `Lowest` are large.
    const std::uint32_t place = static_cast<std::uint32_t>(number) - static_cast<std::uint32_t>(Lowest);
    return place < static_cast<std::uint32_t>(Count) ? First + static_cast<std::int32_t>(place) : kUnspecifiedElement;
  }
};

/// Resolves references as `Delements=` tells for each facet. Elements with a target give the target's record.
class ElementResolver {
 public:
  ElementResolver(FacetTable& facets, const FieldMap& fields, const ElementTable& elements, std::int32_t nullElement,
                  Console& console);

  /// What `text` means in `facet`.
  ResolvedReference Resolve(FacetNumber facet, std::string_view text);
  /// The record of the same, in the usual case alone: the `Number` of a field is that of a known element. Unspecified
  /// otherwise.
  ElementIndex ResolvePlain(FacetNumber facet, std::int32_t number) {
    return number >= 0 && numbersFirst_[facet] != 0 ? Find(facet, number) : kUnspecifiedElement;
  }
  /// The numbers of `facet` that, as the `Number` of a field, mean the element that they mean by `Resolve`. Who looks
  /// one up there tells by `FoundDense`.
  DenseNumbers PlainNumbers(FacetNumber facet) const {
    return numbersFirst_[facet] != 0 ? dense_[facet] : DenseNumbers();
  }
  void FoundDense() { emptyFacet_ = {0}; }

  /// Record of element `number`: 0 for the null element, `kUnspecifiedElement` if the facet has no such element.
  ElementIndex Find(FacetNumber facet, std::int32_t number) {
    const ElementIndex element = dense_[facet].Find(number);
    if (element.value < 0) return FindBySearch(facet, number);
    FoundDense();
    return element;
  }

  /// Whether data name the elements of `facet` by number, and by label.
  bool TakesNumbers(FacetNumber facet) const { return Takes(facet, 'N'); }
  bool TakesLabels(FacetNumber facet) const { return Takes(facet, 'L'); }

  /// The facet of the last lookup by number if it has no elements, else 0.
  FacetNumber EmptyFacet() const { return emptyFacet_; }

 private:
  bool Takes(FacetNumber facet, char kind) const;
  ElementIndex FindBySearch(FacetNumber facet, std::int32_t number);
  /// Unspecified if there is no such label.
  ElementReference FindByLabel(FacetNumber facet, std::string_view text);

  FacetTable& facets_;
  const FieldMap& fields_;
  const ElementTable& elements_;
  std::int32_t nullElement_;
  LabelLists labels_;
  Table<FacetNumber, DenseNumbers> dense_;
  Table<FacetNumber, char> numbersFirst_;
  FacetNumber emptyFacet_{0};
};

}  // namespace tessaly
