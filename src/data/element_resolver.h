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

/// Resolves references as `Delements=` tells for each facet. Elements with a target give the target's record.
class ElementResolver {
 public:
  ElementResolver(FacetTable& facets, const FieldMap& fields, const ElementTable& elements, std::int32_t nullElement,
                  Console& console);

  /// What `text` means in `facet`.
  ResolvedReference Resolve(FacetNumber facet, std::string_view text);
  /// The same, in the usual case alone: the `Number` of a field is that of a known element. Unspecified otherwise.
  ElementReference ResolvePlain(FacetNumber facet, std::int32_t number) {
    if (number < 0 || !quick_[facet].NumbersFirst) return {};
    return {number, Find(facet, number)};
  }

  /// Record of element `number`: 0 for the null element, `kUnspecifiedElement` if the facet has no such element.
  ElementIndex Find(FacetNumber facet, std::int32_t number) {
    const Quick& quick = quick_[facet];
    if (number >= quick.Lowest && number <= quick.Highest) {
      emptyFacet_ = {0};
      return {number - quick.Lowest + quick.First};
    }
    return FindBySearch(facet, number);
  }

  /// Whether data name the elements of `facet` by number, and by label.
  bool TakesNumbers(FacetNumber facet) const { return Takes(facet, 'N'); }
  bool TakesLabels(FacetNumber facet) const { return Takes(facet, 'L'); }

  /// The facet of the last lookup by number if it has no elements, else 0.
  FacetNumber EmptyFacet() const { return emptyFacet_; }

 private:
  /// A facet whose numbers map to records by subtraction; `Highest` is below `Lowest` for the others.
  struct Quick {
    std::int32_t Lowest = 0;
    std::int32_t Highest = -1;
    std::int32_t First = 0;
    bool NumbersFirst = true;
  };

  bool Takes(FacetNumber facet, char kind) const;
  ElementIndex FindBySearch(FacetNumber facet, std::int32_t number);
  std::optional<ElementReference> FindByLabel(FacetNumber facet, std::string_view text);

  FacetTable& facets_;
  const FieldMap& fields_;
  const ElementTable& elements_;
  std::int32_t nullElement_;
  LabelLists labels_;
  Table<FacetNumber, Quick> quick_;
  FacetNumber emptyFacet_{0};
};

}  // namespace tessaly
