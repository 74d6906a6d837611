#include "data/unspecified_list.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace tessaly {

std::size_t UnspecifiedList::ElementHash::operator()(const UnspecifiedElement& element) const {
  constexpr std::size_t kMultiplier = 0x9E3779B97F4A7C15;
  const auto facet = static_cast<std::size_t>(element.FacetNumber);
  const auto number = static_cast<std::size_t>(element.ElementNumber);
  return std::hash<std::string>()(element.Label) ^ ((facet << 32) ^ number) * kMultiplier;
}

std::vector<UnspecifiedElement> UnspecifiedList::Sorted() const {
  std::vector<UnspecifiedElement> sorted(elements_.begin(), elements_.end());
  std::sort(sorted.begin(), sorted.end());
  return sorted;
}

}  // namespace tessaly
