#include "spec/glabel.h"

#include "spec/facet_keywords.h"
#include "spec/keywords.h"
#include "spec/labels_block.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

void TakeLabel(SpecContext& context, const SplitLine& line) {
  const IntegerReading facet = ParseInt(line.Value(1), kMostFacets);
  const IntegerReading group = ParseInt(line.Value(2), kHighestGroup);
  if (!facet.Good() || !group.Good() || line.Value(3).empty()) throw Halt{FailureCode::InvalidGlabel, {}};
  context.Analysis.GroupLabels.try_emplace({facet.Value, group.Value}, line.Value(3));
}

}  // namespace

void ReadGlabel(SpecContext& context, const SplitLine& line) {
  if (!line.NoValue()) {
    TakeLabel(context, line);
    return;
  }
  context.RefuseAsExtra();
  while (const std::optional<SplitLine> entry = context.Reader.NextBlockLine()) {
    if (!entry->Keyword.empty() && !HasKeyword(*entry, "Glabel=")) {
      context.Reader.Unread();
      return;
    }
    if (!entry->NoValue()) TakeLabel(context, *entry);
  }
}

}  // namespace tessaly
