#include "spec/delements.h"

#include <algorithm>
#include <string>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

using Identifiers = std::array<char, 2>;

/// N and L in the order in which they occur; a point stands for the one that does not.
Identifiers IdentifiersOf(std::string_view item) {
  const std::size_t numbers = item.find('N');
  const std::size_t labels = item.find('L');
  if (labels == std::string_view::npos) return {'N', '.'};
  if (numbers == std::string_view::npos) return {'L', '.'};
  return numbers < labels ? Identifiers{'N', 'L'} : Identifiers{'L', 'N'};
}

void TellIgnored(std::string_view item, std::string_view delements, Console& console) {
  console.ShowMessage("");
  console.ShowWarning("Warning (17)! " + QuotedLine(item) + " in Delements=\"" + QuotedLine(delements) +
                      "\" ignored, not N or L");
}

}  // namespace

void ParseDelements(std::string_view delements, std::int32_t facetCount, FieldMap& fields, Console& console) {
  constexpr Identifiers kNotNamed = {};
  Identifiers others = {'N', '.'};
  fields.FacetIdentifiers.assign(facetCount + 1, kNotNamed);
  for (const std::string_view untrimmed : SplitAt(delements, ',')) {
    const std::string_view item = TrimBlanks(untrimmed);
    if (item.empty()) continue;
    if (item.find_first_of("NL") == std::string_view::npos) {
      TellIgnored(item, delements, console);
    } else if (!IsDigit(item.front())) {
      others = IdentifiersOf(item);
    } else if (const IntegerReading facet = ParseInt(item, facetCount); facet.Good()) {
      fields.FacetIdentifiers[{facet.Value}] = IdentifiersOf(item);
    }
  }
  std::replace(fields.FacetIdentifiers.begin(), fields.FacetIdentifiers.end(), kNotNamed, others);
}

}  // namespace tessaly
