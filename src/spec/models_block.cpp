#include "spec/models_block.h"

#include "spec/keywords.h"

namespace tessaly {
namespace {

void TakeStatement(SpecContext& context, const SplitLine& line) {
  if (line.NoValue() || line.Value(1) == "*") return;
  context.Waiting.Models.push_back({context.Analysis.Input.LineNumber, line.Values});
}

}  // namespace

void ReadModels(SpecContext& context, const SplitLine& line) {
  context.RefuseAsExtra();
  context.RequireFacets();
  TakeStatement(context, line);
  while (const std::optional<SplitLine> statement = context.Reader.NextBlockLine()) {
    if (!statement->Keyword.empty() && !HasKeyword(*statement, "Models=")) {
      context.Reader.Unread();
      return;
    }
    TakeStatement(context, *statement);
  }
}

}  // namespace tessaly
