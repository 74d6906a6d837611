#include "spec/entered.h"

#include <algorithm>
#include <vector>

#include "spec/setting_values.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Sets the facet of each column, and a position for each column with a facet.
void SetFields(const std::vector<FacetNumber>& facets, std::int32_t facetCount, FieldMap& fields) {
  Table<FacetNumber, char> occupied(facetCount);
  fields.Columns.assign(static_cast<std::int32_t>(facets.size()), {});
  fields.Positions.clear();
  fields.RepeatedFacet = false;
  for (const ColumnNumber column : fields.Columns.all()) {
    const FacetNumber facet = facets[static_cast<std::size_t>(column.value - 1)];
    if (facet.value == 0) continue;
    const PositionNumber position = fields.Positions.add({facet, column, false});
    fields.Columns[column].ColumnFacet = facet;
    fields.Columns[column].ColumnPosition = position;
    fields.RepeatedFacet |= occupied[facet] != 0;
    occupied[facet] = 1;
  }
}

void TellMismatch(std::int32_t count, std::int32_t expected, const std::string& words, Console& console) {
  if (count != expected) console.ShowWarning(" Entered= has" + GeneralText(count) + words);
}

}  // namespace

void ReadEntered(SpecContext& context, const SplitLine& line) {
  context.RequireFacets();
  if (line.NoValue()) return;
  const auto last =
      std::find_if(line.Values.rbegin(), line.Values.rend(), [](const std::string& value) { return !value.empty(); });
  FieldMap& fields = context.Analysis.Fields;
  const std::int32_t facetCount = context.Analysis.FacetCount();
  const std::int32_t declaredColumns = fields.DataFacetCount();

  std::vector<FacetNumber> facets;
  for (auto value = line.Values.begin(); value != last.base(); ++value) {
    facets.push_back({value->empty() ? 0 : FacetInteger(*value, facetCount)});
  }
  SetFields(facets, facetCount, fields);
  if (fields.ActiveFacetCount() == 0) throw Halt{FailureCode::NumberInvalid, {}};

  Console& console = context.Host.console;
  TellMismatch(fields.DataFacetCount(), declaredColumns, " facet positions. This must match Data=", console);
  TellMismatch(fields.ActiveFacetCount(), facetCount, " active facet positions. This must match Models=", console);
  context.Waiting.EnteredGiven = true;
}

void SetIdentityFields(std::int32_t facetCount, FieldMap& fields) {
  std::vector<FacetNumber> facets;
  for (const ColumnNumber column : fields.Columns.all())
    facets.push_back({column.value <= facetCount ? column.value : 0});
  SetFields(facets, facetCount, fields);
}

}  // namespace tessaly
