#include "reports/vertical_spec.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Facets of more elements are shown as stars if the user says nothing.
constexpr std::int32_t kMostColumnsListed = 20;

ColumnKind KindOf(std::string_view item) {
  const std::size_t at = item.find_first_of("AN*C");
  return at == std::string_view::npos ? ColumnKind::Labels : static_cast<ColumnKind>(item[at]);
}

void AddColumn(FacetNumber facet, ColumnKind kind, const FacetTable& facets, RulerColumns& columns) {
  if (facets[facet].HasElements() && columns.Facets.size() < kMostFacetColumns) columns.Facets.push_back({facet, kind});
}

void AddFacetItem(std::string_view item, const FacetTable& facets, RulerColumns& columns) {
  const ColumnKind kind = KindOf(item);
  const double number = LeadingNumber(item.substr(std::min(item.find_first_of("-.0123456789"), item.size())));
  if (number == 0) {
    for (const FacetNumber facet : facets.all()) AddColumn(facet, kind, facets, columns);
    return;
  }
  const FacetNumber facet{RoundToLong(number)};
  if (number == std::trunc(number) && facets.holds(facet)) AddColumn(facet, kind, facets, columns);
}

RulerColumns DefaultColumns(const FacetTable& facets) {
  RulerColumns columns;
  for (const FacetNumber facet : facets.all()) {
    const bool many = facets[facet].FacetElementCount > kMostColumnsListed;
    AddColumn(facet, many ? ColumnKind::Stars : ColumnKind::Labels, facets, columns);
  }
  return columns;
}

}  // namespace

std::vector<std::string_view> SplitRulers(std::string_view text) {
  std::vector<std::string_view> rulers;
  text = TrimBlanks(text);
  do {
    text.remove_prefix(std::min(text.find_first_not_of("( "), text.size()));
    const std::size_t end = std::min(text.find_first_of("()"), text.size());
    rulers.push_back(text.substr(0, end));
    text.remove_prefix(std::min(text.find_first_not_of("), ", end), text.size()));
  } while (!text.empty() && rulers.size() < kMostRulers);
  return rulers;
}

RulerColumns ParseVertical(std::string_view ruler, const FacetTable& facets) {
  const std::string text = UpperAscii(TrimBlanks(ruler));
  if (text.empty() || text.front() == 'Y') return DefaultColumns(facets);
  RulerColumns columns;
  for (const std::string_view untrimmed : SplitAt(text, ',')) {
    const std::string_view item = TrimBlanks(untrimmed);
    if (item.empty()) continue;
    if (item.find('#') != std::string_view::npos) {
      columns.Scales = ScaleDisplay::None;
    } else if (item.front() == 'S') {
      columns.Scales = item.starts_with("SL") ? ScaleDisplay::CategoriesAndLabels : ScaleDisplay::Categories;
    } else {
      AddFacetItem(item, facets, columns);
    }
  }
  return columns;
}

Yardstick ParseYardstick(std::string_view yardstick) {
  const std::vector<std::string_view> items = SplitAt(yardstick, ',');
  const auto item = [&](std::size_t at) { return at < items.size() ? TrimBlanks(items[at]) : std::string_view(); };
  const auto number = [&](std::size_t at) {
    constexpr double kLargest = double(std::numeric_limits<float>::max());
    return static_cast<float>(std::clamp(LeadingNumber(item(at)), -kLargest, kLargest));
  };
  Yardstick result;
  result.Columns = std::max(RoundToLong(double(number(0))), 0);
  result.LinesPerUnit = number(1);
  result.Low = number(2);
  result.High = number(3);
  result.ExtremesByMeasure = !item(4).empty() && UpperAscii(item(4).front()) == 'M';
  return result;
}

}  // namespace tessaly
