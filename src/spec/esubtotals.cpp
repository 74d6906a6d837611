#include "spec/esubtotals.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "spec/keywords.h"
#include "spec/setting_values.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

void TakeTarget(SpecContext& context, const SplitLine& line) {
  const std::int32_t facets = context.Analysis.FacetCount();
  const std::int32_t target = WholeValue(line.Value(1));
  if (target < 1 || target > facets)
    throw Halt{FailureCode::InvalidDvalues,
               "Esubtotals= must be target facet (1-" + BareText(facets) + "), reference facet, ..."};
  for (std::size_t number = 2; number <= line.Values.size(); ++number) {
    const std::int32_t reference = WholeValue(line.Value(number));
    if (reference < 1 || reference > facets) continue;
    std::vector<std::int32_t>& references = context.Analysis.Settings.Esubtotals[target];
    if (std::find(references.begin(), references.end(), reference) == references.end()) references.push_back(reference);
  }
}

}  // namespace

void ReadEsubtotals(SpecContext& context, const SplitLine& line) {
  context.RequireFacets();
  if (!line.NoValue()) {
    TakeTarget(context, line);
    return;
  }
  context.RefuseAsExtra();
  while (const std::optional<SplitLine> entry = NextBlockEntry(context, "Esubtotals=")) TakeTarget(context, *entry);
}

}  // namespace tessaly
