#include "interaction/bias_terms.h"

#include <algorithm>
#include <limits>

#include "support/number_text.h"

namespace tessaly {

namespace {

std::int64_t ElementCount(const Facet& facet) {
  return std::max(facet.FacetElementCount, 1);
}

}  // namespace

std::int64_t BiasTerm::Freedom() const {
  return std::max(RoundToLong(static_cast<double>(CountSum) - 1), 1);
}

bool CombinationsCanBeNumbered(const std::vector<FacetNumber>& facets, const FacetTable& table) {
  std::int64_t combinations = 1;
  for (const FacetNumber facet : facets) {
    if (combinations > std::numeric_limits<std::int64_t>::max() / ElementCount(table[facet])) return false;
    combinations *= ElementCount(table[facet]);
  }
  return true;
}

BiasTerms::BiasTerms(const std::vector<FacetNumber>& facets, const FacetTable& table) {
  std::int64_t divisor = 1;
  for (const FacetNumber number : facets) {
    const Facet& facet = table[number];
    positions_.push_back({number, facet.FacetFirstElement, ElementCount(facet), divisor});
    divisor *= ElementCount(facet);
    label_ += (label_.empty() ? "" : ", ") + BareText(number.value) + ". " + facet.FacetLabel;
  }
}

}  // namespace tessaly
