#include "spec/glabel.h"

#include "spec/facet_keywords.h"
#include "spec/keywords.h"
#include "spec/labels_block.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

void TakeLabel(SpecContext& context, const SplitLine& line) {
  const std::int32_t facets = context.Analysis.FacetCount();
  const IntegerReading facet = ParseInt(line.Value(1), facets > 0 ? facets : kMostFacets);
  const IntegerReading group = ParseInt(line.Value(2), kHighestGroup);
  if (!facet.Good() || facet.Value == 0 || !group.Good() || line.Value(3).empty())
    throw Halt{FailureCode::InvalidGlabel, {}};
  context.Analysis.GroupLabels.try_emplace({facet.Value, group.Value}, line.Value(3));
}

}  // namespace

void ReadGlabel(SpecContext& context, const SplitLine& line) {
  if (!line.NoValue()) {
    TakeLabel(context, line);
    return;
  }
  context.RefuseAsExtra();
  while (const std::optional<SplitLine> entry = NextBlockEntry(context, "Glabel=")) TakeLabel(context, *entry);
}

}  // namespace tessaly
