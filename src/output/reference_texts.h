// What must stand in a data line for an element.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/element_resolver.h"
#include "state/analysis.h"

namespace tessaly {

/// Whether `text`, between commas of a data line, is read as it stands.
bool IsDataField(std::string_view text);

/// References that an analysis with the same specification resolves to the same elements: by number where that works,
/// else by label (`Delements=`).
class ReferenceTexts {
 public:
  explicit ReferenceTexts(const Analysis& analysis);

  /// The reference to `element`, or to no element, in `facet`. If data have no way to say it, that of the facet's first
  /// element: no element is then a position that the model statement ignores, where any will do, but an empty field
  /// would halt the run.
  const std::string& TextOf(FacetNumber facet, ElementIndex element);
  /// What `text` means in `facet`.
  ResolvedReference Resolve(FacetNumber facet, std::string_view text) { return resolver_.Resolve(facet, text); }
  /// Record of element `number`, as `ElementResolver::Find` gives it.
  ElementIndex Find(FacetNumber facet, std::int32_t number) { return resolver_.Find(facet, number); }
  bool TakesNumbers(FacetNumber facet) const { return resolver_.TakesNumbers(facet); }

 private:
  std::string FindText(FacetNumber facet, ElementIndex element);
  bool Means(FacetNumber facet, const std::string& text, ElementIndex element);

  Console silence_;
  /// A look-up leaves notes in the table.
  FacetTable facets_;
  const ElementTable& elements_;
  std::int32_t nullElement_;
  ElementResolver resolver_;
  /// By element, and by facet for no element; empty as long as nobody asked.
  Table<ElementIndex, std::string> texts_;
  Table<FacetNumber, std::string> nullTexts_;
};

}  // namespace tessaly
