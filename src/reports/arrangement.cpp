#include "reports/arrangement.h"

#include <algorithm>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

std::vector<Arrangement> Arrangements(std::string_view arrange) {
  std::vector<Arrangement> items;
  for (const std::string_view text : SplitAt(arrange, ',')) {
    const std::size_t letters = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::string_view digits = text.substr(0, letters);
    Arrangement item{{}, std::string(text), std::string(text.substr(letters))};
    if (!digits.empty()) item.Facet = FacetNumber{ParseInt(digits, kHighestElementNumber).Value};
    items.push_back(std::move(item));
  }
  return items;
}

std::vector<Arrangement> ArrangementsOfAll(std::string_view arrange) {
  std::vector<Arrangement> items = Arrangements(arrange);
  std::erase_if(items, [](const Arrangement& item) {
    return item.Text.empty() || item.Facet.value_or(FacetNumber{0}).value != 0;
  });
  return items.empty() ? Arrangements("0mN") : items;
}

}  // namespace tessaly
