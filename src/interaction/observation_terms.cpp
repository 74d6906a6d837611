#include "interaction/observation_terms.h"

#include <algorithm>

#include "support/failure.h"

namespace tessaly {

ObservationTerms::ObservationTerms(const BiasTerms& terms, const FieldMap& fields) {
  for (const BiasPosition& position : terms.Positions()) {
    BiasColumn& column = columns_.emplace_back(BiasColumn{position, {}});
    for (const PositionNumber place : fields.Positions.all())
      if (fields.Positions[place].PositionFacet == position.BiasFacet)
        column.Places.insert(column.Places.begin(), static_cast<std::size_t>(place.value - 1));
  }
}

std::int64_t ObservationTerms::KeyOf(const Observation& obs) const {
  if (obs.Status != ReadStatus::Usable) return -1;
  std::int64_t key = 0;
  for (const BiasColumn& column : columns_) {
    ElementIndex element = kNoElement;
    for (const std::size_t place : column.Places) {
      element = obs.Elements[place].CurrentElement;
      if (element != kNoElement) break;
    }
    if (element == kNoElement) return -1;
    key += column.Position.Divisor * (element.value - column.Position.FirstElement.value);
  }
  return key;
}

TermIndex ObservationTerms::TermOf(const Observation& obs) const {
  const std::int64_t key = KeyOf(obs);
  if (key < 0) return {0};
  const TermIndex term = numbers_.Find(key);
  if (term.value == 0) throw FatalError{"Failure (15)! Bias sort failure."};
  return term;
}

}  // namespace tessaly
