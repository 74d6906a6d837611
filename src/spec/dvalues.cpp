#include "spec/dvalues.h"

#include <limits>

#include "spec/keywords.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

constexpr std::size_t kMostDvaluesFields = 4;
/// `DvalueStart` of a column that is the group number of its source.
constexpr std::int32_t kGroupNumber = -1;

std::int32_t AboveZero(std::string_view text, std::int32_t limit, FailureCode failure) {
  const IntegerReading reading = ParseInt(text, limit);
  if (!reading.Good() || reading.Value == 0) throw Halt{failure, {}};
  return reading.Value;
}

void TakePiece(const std::vector<std::string>& values, DvaluesEntry& entry) {
  constexpr std::int32_t kAny = std::numeric_limits<std::int16_t>::max();
  entry.Source = {AboveZero(values[1], kAny, FailureCode::DvaluesFieldProblem)};
  if (entry.Source.value == entry.Column.value) throw Halt{FailureCode::DvaluesFieldProblem, {}};
  if (UpperAscii(values[2]) == "$G") {
    entry.Start = kGroupNumber;
    return;
  }
  if (values.size() < kMostDvaluesFields) throw Halt{FailureCode::DvaluesFieldProblem, {}};
  entry.Start = AboveZero(values[2], kAny, FailureCode::DvaluesFieldProblem);
  entry.Length = AboveZero(values[3], kAny, FailureCode::DvaluesFieldProblem);
}

void TakeEntry(SpecContext& context, const SplitLine& line) {
  std::vector<std::string> values = line.Values;
  while (!values.empty() && values.back().empty()) values.pop_back();
  if (values.size() < 2 || values.size() > kMostDvaluesFields || values[1].empty())
    throw Halt{FailureCode::InvalidDvalues, {}};
  DvaluesEntry entry;
  entry.Line = {context.Analysis.Input.LineNumber, context.Analysis.Input.LastLine};
  entry.Column = {AboveZero(values[0], context.Analysis.FacetCount(), FailureCode::InvalidDvalues)};
  if (values.size() == 2) {
    entry.Text = values[1];
  } else {
    TakePiece(values, entry);
  }
  context.Analysis.Settings.DvaluesSpec.push_back(Joined(values, ","));
  context.Waiting.Dvalues.push_back(std::move(entry));
}

/// Follows the sources of `column` to their end.
void UseSources(ColumnNumber column, FieldMap& fields) {
  std::int32_t steps = 0;
  for (ColumnNumber source = column; fields.Columns[source].Derived();) {
    source = fields.Columns[source].DvalueSource;
    if (++steps > fields.DataFacetCount()) throw Halt{FailureCode::DvaluesCircular, {}};
    const PositionNumber position = fields.Columns[source].ColumnPosition;
    if (position.value == 0) throw Halt{FailureCode::DvaluesUndefinedFacet, {}};
    fields.Positions[position].PositionInUse = true;
  }
}

}  // namespace

void ReadDvalues(SpecContext& context, const SplitLine& line) {
  context.RequireFacets();
  const bool block = line.NoValue() || line.Value(1) == "*";
  if (block) context.RefuseAsExtra();
  if (!block) TakeEntry(context, line);
  if (context.ExtraSpecPhase) return;
  while (const std::optional<SplitLine> entry = context.Reader.NextBlockLine()) {
    if (!entry->Keyword.empty() && !HasKeyword(*entry, "Dvalues=")) {
      context.Reader.Unread();
      return;
    }
    if (!entry->NoValue()) TakeEntry(context, *entry);
  }
}

void ApplyDvalues(const std::vector<DvaluesEntry>& entries, FieldMap& fields, InputLine& at) {
  const InputLine lastRead = at;
  for (const DvaluesEntry& entry : entries) {
    at = {entry.Line.LineNumber, entry.Line.Text};
    if (!fields.Columns.holds(entry.Column)) throw Halt{FailureCode::InvalidDvalues, {}};
    if (entry.Source.value > fields.DataFacetCount()) throw Halt{FailureCode::DvaluesFieldProblem, {}};
    DataColumn& column = fields.Columns[entry.Column];
    column.DvalueText = entry.Text;
    column.DvalueSource = entry.Source;
    column.DvalueStart = entry.Start;
    column.DvalueLength = entry.Length;
  }
  for (const DvaluesEntry& entry : entries) {
    at = {entry.Line.LineNumber, entry.Line.Text};
    const PositionNumber position = fields.Columns[entry.Column].ColumnPosition;
    if (position.value != 0 && fields.Positions[position].PositionInUse) UseSources(entry.Column, fields);
  }
  at = lastRead;
}

}  // namespace tessaly
