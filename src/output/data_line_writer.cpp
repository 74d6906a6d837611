#include "output/data_line_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "data/line_references.h"
#include "spec/element_lookup.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

bool CountsLines(const DataColumn& column) {
  const std::string text = UpperAscii(column.DvalueText);
  return text == "$L" || text == "$C";
}

/// Without exponent: data have none in a weight.
std::string WeightText(float weight) {
  return weight == std::floor(weight) ? BareText(static_cast<std::int64_t>(weight)) : PlainNumber(weight);
}

}  // namespace

DataLineWriter::DataLineWriter(const Analysis& analysis, TextOutput& output)
    : analysis_(analysis),
      output_(output),
      references_(analysis),
      matcher_(analysis.Models.Statements),
      range_(1),
      numbers_(static_cast<std::size_t>(analysis.Fields.ActiveFacetCount())) {
  for (const ColumnNumber column : analysis.Fields.Columns.all()) {
    const DataColumn& facts = analysis.Fields.Columns[column];
    const PositionNumber position = facts.ColumnPosition;
    const bool inUse = position.value > 0 && analysis.Fields.Positions[position].PositionInUse;
    const bool counting = inUse && CountsLines(facts);
    if (counting) countingColumns_.push_back(column);
    if (!counting && !facts.OnTheLine()) {
      PlanSupplied(column);
      continue;
    }
    ColumnPlan plan{facts.ColumnFacet, {}};
    if (inUse) plan.Position = static_cast<std::size_t>(position.value - 1);
    plans_.push_back(plan);
  }
  responses_.resize(range_.size());
  comments_.resize(range_.size());
}

/// Finds out whether a column that is not on the line asks for several responses.
void DataLineWriter::PlanSupplied(ColumnNumber column) {
  const DataColumn& facts = analysis_.Fields.Columns[column];
  const PositionNumber position = facts.ColumnPosition;
  if (position.value == 0 || facts.Derived() || rangePosition_.value > 0) return;
  const std::string text = Replaced(facts.DvalueText, '_', '-');
  const bool inUse = analysis_.Fields.Positions[position].PositionInUse;
  std::optional<ElementRange> range;
  if (inUse) {
    range = references_.Resolve(facts.ColumnFacet, text).Range;
  } else if (references_.TakesNumbers(facts.ColumnFacet)) {
    range = ParseElementRange(text);
  }
  if (!range || range->First == range->Second) return;
  rangePosition_ = position;
  rangeInUse_ = inUse;
  const std::int64_t length = std::abs(std::int64_t{range->Second} - range->First) + 1;
  range_.assign(static_cast<std::size_t>(std::min(length, kLongestRange)), {});
  if (!inUse) return;
  std::int32_t number = range->First;
  for (ElementReference& element : range_) {
    element = {number, references_.Find(facts.ColumnFacet, number)};
    number += range->First < range->Second ? 1 : -1;
  }
}

std::string DataLineWriter::HeadOf(const WrittenResponse& response) {
  std::string fields;
  for (const ColumnPlan& plan : plans_) {
    if (plan.Position) fields += references_.TextOf(plan.Facet, response.Elements[*plan.Position]);
    fields += ',';
  }
  const std::string prefix = UpperAscii(analysis_.Settings.ReplicationChar);
  if (prefix.empty()) return fields;
  // A label in front may look like a weight, an include file or the end of the data: behind a weight it does not.
  const char first = fields.empty() ? ' ' : UpperAscii(fields.front());
  if (response.Replication == 1 && first != prefix.front() && first != '%' && first != '*') return fields;
  return analysis_.Settings.ReplicationChar + WeightText(response.Replication) + "," + fields;
}

void DataLineWriter::Write(const WrittenResponse& response) {
  std::string head = HeadOf(response);
  std::optional<std::size_t> place;
  if (nextPlace_ > 0 && head == head_) place = FindPlace(response, nextPlace_);
  if (!place) {
    Finish();
    head_ = std::move(head);
    place = FindPlace(response, 0).value_or(0);
  }
  responses_[*place] = response.Response;
  comments_[*place] = response.Comment;
  nextPlace_ = *place + 1;
}

std::optional<std::size_t> DataLineWriter::FindPlace(const WrittenResponse& response, std::size_t from) {
  for (std::size_t place = from; place < range_.size(); ++place)
    if (!rangeInUse_ || PlaceTakes(place, response)) return place;
  return {};
}

bool DataLineWriter::PlaceTakes(std::size_t place, const WrittenResponse& response) {
  const auto at = static_cast<std::size_t>(rangePosition_.value - 1);
  if (response.Elements[at] != kNoElement) return range_[place].Element == response.Elements[at];
  // The statement ignores the position, but another one may be looking for the element.
  for (std::size_t p = 0; p < numbers_.size(); ++p) {
    const ElementIndex element = response.Elements[p];
    numbers_[p] = element == kNoElement ? analysis_.Settings.NullElement : analysis_.Elements.ElementNumber[element];
  }
  numbers_[at] = range_[place].Number;
  return matcher_.First(numbers_.data()) == response.Statement;
}

void DataLineWriter::Finish() {
  if (nextPlace_ == 0) return;
  std::string line = head_ + Joined(responses_, ",");
  if (std::any_of(comments_.begin(), comments_.end(), [](const std::string& comment) { return !comment.empty(); }))
    line.append(" ; ").append(Joined(comments_, ","));
  output_.WriteLine(line);
  responses_.assign(range_.size(), {});
  comments_.assign(range_.size(), {});
  nextPlace_ = 0;
}

}  // namespace tessaly
