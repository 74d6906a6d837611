#include "data/line_references.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {

LineReferences::LineReferences(const FieldMap& fields, const ElementTable& elements, ElementResolver& resolver,
                               Console& console)
    : fields_(fields),
      elementTable_(elements),
      resolver_(resolver),
      console_(console),
      numbers_(static_cast<std::size_t>(fields.ActiveFacetCount()), 0),
      elements_(static_cast<std::size_t>(fields.ActiveFacetCount()), kNoElement) {
  for (const ColumnNumber column : fields.Columns.all()) {
    const DataColumn& facts = fields.Columns[column];
    dvaluesUsed_ = dvaluesUsed_ || !facts.OnTheLine();
    if (facts.ColumnPosition.value == 0) continue;
    const bool inUse = fields.Positions[facts.ColumnPosition].PositionInUse;
    const ColumnPlan plan{column, facts.ColumnPosition, facts.ColumnFacet, inUse,
                          inUse ? resolver.PlainNumbers(facts.ColumnFacet) : DenseNumbers()};
    if (!facts.Derived()) {
      plans_.push_back(plan);
    } else if (plan.InUse) {
      derived_.push_back(plan);
    }
  }
  OrderDerived();
}

void LineReferences::OrderDerived() {
  std::vector<ColumnPlan> waiting = std::exchange(derived_, {});
  const auto waits = [&](ColumnNumber column) {
    return std::any_of(waiting.begin(), waiting.end(), [&](const ColumnPlan& plan) { return plan.Column == column; });
  };
  for (bool moved = true; moved && !waiting.empty();) {
    moved = false;
    for (std::size_t at = 0; at < waiting.size();) {
      if (waits(fields_.Columns[waiting[at].Column].DvalueSource)) {
        ++at;
        continue;
      }
      derived_.push_back(waiting[at]);
      waiting.erase(waiting.begin() + static_cast<std::ptrdiff_t>(at));
      moved = true;
    }
  }
  derivedCircular_ = !waiting.empty();
}

inline void LineReferences::UpdateAllKnown() {
  allKnown_ = std::all_of(elements_.begin(), elements_.end(), [](ElementIndex element) { return element.value >= 0; });
}

void LineReferences::Complete(DataLine& line) {
  if (derivedCircular_) throw Halt{FailureCode::DvaluesCircular, {}};
  for (const ColumnPlan& plan : derived_) Derive(plan, line);
  UpdateAllKnown();
}

void LineReferences::ResolveText(const ColumnPlan& plan, const DataField& field) {
  if (!plan.InUse) {
    if (field.Number < 0) OpenUnusedRange(plan, field.Text);
    return;
  }
  if (const ElementIndex plain = resolver_.ResolvePlain(plan.Facet, field.Number); plain.value >= 0)
    return Set(plan.Position, {field.Number, plain});
  const ResolvedReference reference = resolver_.Resolve(plan.Facet, field.Text);
  Set(plan.Position, reference.Single);
  if (reference.Range) OpenRange(plan, field.Text, *reference.Range);
}

void LineReferences::OpenRange(const ColumnPlan& plan, std::string_view text, ElementRange range) {
  if (rangePosition_.value != 0)
    throw Halt{FailureCode::SecondRange, dvaluesUsed_ ? ": could be a problem in Dvalues=" : ""};
  rangePosition_ = plan.Position;
  range_ = range;
  rangeLength_ = std::abs(std::int64_t{range.Second} - std::int64_t{range.First}) + 1;
  if (rangeLength_ > kLongestRange) {
    const std::string count = BareText(rangeLength_);
    console_.ShowWarning("Too many elements (" + count + ") specified in: " + QuotedLine(text));
    throw Halt{FailureCode::RangeTooLong, {}};
  }
  if (plan.InUse) Set(plan.Position, {range.First, resolver_.Find(plan.Facet, range.First)});
}

void LineReferences::OpenUnusedRange(const ColumnPlan& plan, std::string_view text) {
  if (text.find('-') == std::string_view::npos || !resolver_.TakesNumbers(plan.Facet)) return;
  const std::optional<ElementRange> range = ParseElementRange(text);
  if (range && range->First != range->Second) OpenRange(plan, text, *range);
}

void LineReferences::NextOfRange(DataLine& line) {
  ++rangeStep_;
  if (!RangeInUse()) return;
  const std::int32_t number = RangeNumber(rangeStep_);
  const ElementIndex element = resolver_.Find(fields_.Positions[rangePosition_].PositionFacet, number);
  Set(rangePosition_, {number, element});
  if (allKnown_ && element.value >= 0 && derived_.empty()) return;
  for (const ColumnPlan& plan : derived_)
    if (plan.Position != rangePosition_) Derive(plan, line);
  UpdateAllKnown();
}

void LineReferences::Derive(const ColumnPlan& plan, DataLine& line) {
  const DataColumn& column = fields_.Columns[plan.Column];
  const bool known = fields_.Columns.holds(column.DvalueSource);
  const PositionNumber from = known ? fields_.Columns[column.DvalueSource].ColumnPosition : PositionNumber{0};
  if (from.value == 0) return Set(plan.Position, {-1, kUnderivable});
  const ElementIndex source = At(from).Element;
  if (source.value < 0) return Set(plan.Position, {-1, kUnspecifiedElement});
  if (!HasLabelText(column, source)) return Set(plan.Position, {0, kNoElement});

  line.SetDerived(plan.Column, DerivedText(column, source));
  const std::string_view text = line.Text(plan.Column.value);
  const ResolvedReference reference = resolver_.Resolve(plan.Facet, text);
  const bool failed = reference.Range || reference.Single.Element == kNotAReference;
  if (failed && rangeStep_ > 1) throw Halt{FailureCode::InvalidTarget, {}};
  Set(plan.Position, reference.Single);
  if (reference.Range) OpenRange(plan, text, *reference.Range);
}

bool LineReferences::HasLabelText(const DataColumn& column, ElementIndex source) const {
  if (source == kNoElement) return false;
  return column.DvalueStart == -1 || !elementTable_.ElementLabel[source].empty();
}

std::string LineReferences::DerivedText(const DataColumn& column, ElementIndex source) const {
  if (column.DvalueStart == -1) {
    const std::int32_t group = std::abs(std::int32_t{elementTable_.ElementGroup[source]});
    return BareText(group);
  }
  const std::string_view label = elementTable_.ElementLabel[source];
  const auto start = static_cast<std::size_t>(std::max(column.DvalueStart - 1, 0));
  if (start >= label.size()) return {};
  return std::string(TrimBlanks(label.substr(start, static_cast<std::size_t>(std::max(column.DvalueLength, 0)))));
}

}  // namespace tessaly
