// The order of bias terms in a table, and the pieces of the keys that give it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "interaction/bias_terms.h"
#include "state/elements.h"
#include "state/facets.h"
#include "state/run_control.h"
#include "state/settings.h"

namespace tessaly {

/// Ranks of the elements of bias facets by their labels, compared without blanks at their ends; equal labels share a
/// rank.
class LabelRanks {
 public:
  LabelRanks(const BiasTerms& terms, const FacetTable& facets, const ElementTable& elements);

  /// The rank of an element of bias facet `position` (from 0).
  std::uint32_t Of(std::size_t position, ElementIndex element) const {
    return ranks_[position][static_cast<std::size_t>(element.value - firsts_[position].value)];
  }

 private:
  std::vector<std::vector<std::uint32_t>> ranks_;
  std::vector<ElementIndex> firsts_;
};

/// The estimable terms in the order of an arrangement: letters A labels (the last facet first), F t statistic, M size,
/// N number; capitals ascending, small letters descending; P, for which terms have no figure, changes nothing. By size
/// and t, terms of a score of 0 stand where the lowest value would and those of a perfect score where the highest
/// would, whatever their estimates.
std::vector<TermIndex> SortTerms(const BiasTerms& terms, const FacetTable& facets, const ElementTable& elements,
                                 BiasDirection direction, std::string_view letters, RunControl& control);

}  // namespace tessaly
