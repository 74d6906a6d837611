// Which bias term an observation belongs to.
#pragma once

#include <cstdint>
#include <vector>

#include "data/observation_pass.h"
#include "interaction/bias_terms.h"
#include "interaction/term_numbers.h"
#include "state/facets.h"

namespace tessaly {

/// The terms of observations: by the elements of the bias facets, of an observation whose elements are all measurable.
class ObservationTerms {
 public:
  ObservationTerms(const BiasTerms& terms, const FieldMap& fields);

  /// Numbers all terms that `Meet` was called for, and gives their keys.
  std::vector<std::int64_t> Number() { return numbers_.Number(); }
  void Meet(const Observation& obs) {
    if (const std::int64_t key = KeyOf(obs); key >= 0) numbers_.Meet(key);
  }
  /// The term of `obs`; 0 if it has none. Throws `FatalError` for a combination that was not met.
  TermIndex TermOf(const Observation& obs) const;

 private:
  struct BiasColumn {
    BiasPosition Position;
    /// Where the facet stands in an observation, the last first; entry 0 is position 1.
    std::vector<std::size_t> Places;
  };

  /// -1 if an element is missing or not measurable.
  std::int64_t KeyOf(const Observation& obs) const;

  std::vector<BiasColumn> columns_;
  TermNumbers numbers_;
};

}  // namespace tessaly
