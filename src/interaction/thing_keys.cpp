#include "interaction/thing_keys.h"

#include <limits>

namespace tessaly {

ThingKeys::ThingKeys(const std::vector<std::size_t>& matching, const Analysis& analysis, std::int64_t observations) {
  constexpr std::uint64_t kRoom = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t keys = 1;
  for (const std::size_t at : matching) {
    const PositionNumber position{static_cast<std::int32_t>(at) + 1};
    const Facet& facet = analysis.Facets[analysis.Fields.Positions[position].PositionFacet];
    Digit digit{at, facet.FacetFirstElement.value, static_cast<std::uint64_t>(facet.FacetElementCount) + 1, false};
    if (keys > kRoom / digit.Values) {
      digit.Renumber = true;
      keys = static_cast<std::uint64_t>(observations);
    }
    keys *= digit.Values;
    digits_.push_back(digit);
  }
  numbers_.resize(digits_.size());
}

std::uint64_t ThingKeys::KeyOf(const Observation& obs) {
  std::uint64_t key = 0;
  for (std::size_t at = 0; at < digits_.size(); ++at) {
    const Digit& digit = digits_[at];
    if (digit.Renumber) key = numbers_[at].try_emplace(key, numbers_[at].size()).first->second;
    const ElementIndex element = obs.Elements[digit.Position].CurrentElement;
    const std::int32_t value = element == kNoElement ? 0 : element.value - digit.FirstElement + 1;
    key = key * digit.Values + static_cast<std::uint64_t>(value);
  }
  return key;
}

}  // namespace tessaly
