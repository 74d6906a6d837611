#include "spec/facet_keywords.h"

#include <algorithm>
#include <string>

#include "spec/setting_values.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

std::string_view WithoutZ(std::string_view item) {
  if (item.size() > 1 && (item.back() == 'Z' || item.back() == 'z')) item.remove_suffix(1);
  return item;
}

void CreateFacets(Analysis& analysis, std::int32_t count) {
  analysis.Facets = DefaultFacets(count);
  analysis.Fields.Columns.assign(count, {});
}

struct ListedFacet {
  FacetNumber Facet;
  /// The item has a letter Z.
  bool WithZ = false;
};

/// The facets of a list; a 0 names none. Creates the facet table if there is none yet.
std::vector<ListedFacet> ListedFacets(SpecContext& context, const std::vector<std::string>& items) {
  std::int32_t limit = context.Analysis.FacetCount();
  if (limit == 0) {
    limit = 2;
    for (const std::string& item : items)
      if (!item.empty()) limit = std::max(limit, FacetInteger(WithoutZ(item), kMostFacets));
    CreateFacets(context.Analysis, limit);
  }
  std::vector<ListedFacet> facets;
  for (const std::string& item : items) {
    if (item.empty()) continue;
    const FacetNumber facet{FacetInteger(WithoutZ(item), limit)};
    if (facet.value > 0) facets.push_back({facet, item.find_first_of("Zz") != std::string::npos});
  }
  return facets;
}

/// Gives the listed facets the orientation `listed`. In a list, `others` is that of all other facets.
void Orient(SpecContext& context, const SplitLine& line, bool listed) {
  FacetTable& facets = context.Analysis.Facets;
  const char letter = line.NoValue() ? 'N' : FirstLetter(line.Value(1));
  if (letter == 'Y' || letter == 'N') {
    ListedFacets(context, {});
    for (Facet& facet : facets) facet.FacetPositive = (letter == 'Y') == listed;
    return;
  }
  const std::vector<ListedFacet> list = ListedFacets(context, line.Values);
  for (Facet& facet : facets) facet.FacetPositive = !listed;
  for (const ListedFacet& item : list) facets[item.Facet].FacetPositive = listed;
}

}  // namespace

void ReadFacets(SpecContext& context, const SplitLine& line) {
  Analysis& analysis = context.Analysis;
  const IntegerReading count = PlainInteger(line.Value(1), kMostFacets);
  const IntegerReading columns = line.Value(2).empty() ? IntegerReading{} : PlainInteger(line.Value(2), kMostFacets);
  if (!count.Good() || count.Value == 0 || !columns.Good()) {
    context.Host.console.ShowWarning("Facets= takes whole numbers up to" + GeneralText(kMostFacets));
    throw Halt{FailureCode::NumberInvalid, {}};
  }
  if (analysis.FacetCount() == 0) CreateFacets(analysis, count.Value);
  if (analysis.FacetCount() != count.Value)
    throw Halt{FailureCode::FacetsConflict,
               "Facets= must come before Noncenter=, Center=, Positive= and Negative=, on the command line too"};
  if (columns.Value > 0 && !context.Waiting.EnteredGiven) analysis.Fields.Columns.resize(columns.Value);
}

void ReadNoncenter(SpecContext& context, const SplitLine& line) {
  const std::vector<ListedFacet> list = ListedFacets(context, line.Values);
  FacetTable& facets = context.Analysis.Facets;
  facets[{1}].FacetCenter = Centering::Centered;
  for (const ListedFacet& item : list) facets[item.Facet].FacetCenter = Centering::NotCentered;
}

void ReadCenter(SpecContext& context, const SplitLine& line) {
  const std::vector<ListedFacet> list = ListedFacets(context, line.Values);
  FacetTable& facets = context.Analysis.Facets;
  for (Facet& facet : facets) facet.FacetCenter = Centering::NotCentered;
  for (const ListedFacet& item : list)
    facets[item.Facet].FacetCenter = item.WithZ ? Centering::CenteredWithExtremes : Centering::Centered;
}

void ReadPositive(SpecContext& context, const SplitLine& line) {
  Orient(context, line, true);
}

void ReadNegative(SpecContext& context, const SplitLine& line) {
  Orient(context, line, false);
}

}  // namespace tessaly
