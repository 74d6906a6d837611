#include "data/data_notes.h"

#include <algorithm>
#include <optional>

#include "data/data_files.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Data may be one long run of invalid values: no more than these are told apart.
constexpr std::size_t kMostInvalidValues = 10000;
constexpr std::size_t kInvalidValuesShown = 3;

/// What stands behind the text of a column: nothing, or number and label in parentheses.
std::string Explanation(const ElementReference& reference, const Facet& facet, std::string_view text,
                        const ElementTable& elements) {
  if (reference.Number < 0) return " (?)";
  const std::string number = BareText(reference.Number);
  if (number == text) return {};
  if (reference.Element.value < 0) return " (" + number + ", ?)";
  const bool null = reference.Element == kNoElement;
  const std::string& label = null ? facet.FacetNullLabel : elements.ElementLabel[reference.Element];
  if (label == text || label == number) return " (" + number + ")";
  return " (" + number + (null ? ", Null, " : ", ") + label + ")";
}

}  // namespace

std::string ProcessedLine(const DataLine& line, const LineReferences& references, const Analysis& analysis) {
  const FieldMap& fields = analysis.Fields;
  std::string processed = line.ReplicationField();
  for (std::int32_t number = 1; number <= line.FieldCount(); ++number) {
    if (number > 1 || !processed.empty()) processed += ", ";
    if (number == fields.DataFacetCount() + 1) processed += ' ';
    processed += line.Text(number);
    if (!fields.Columns.holds({number})) continue;
    const PositionNumber position = fields.Columns[{number}].ColumnPosition;
    if (position.value == 0 || !fields.Positions[position].PositionInUse) continue;
    processed += Explanation(references.At(position), analysis.Facets[fields.Positions[position].PositionFacet],
                             line.Text(number), analysis.Elements);
  }
  return processed;
}

std::string DatumLocation(const DataLine& line, const LineReferences& references, std::int32_t positions,
                          std::string_view datum) {
  std::string location = line.Replication() == 1 ? std::string() : line.ReplicationField() + ",";
  for (PositionNumber position{1}; position.value <= positions; ++position)
    location += BareText(references.At(position).Number) + ",";
  return location.append(datum);
}

void DataNotes::NoteReferences(const DataLine& line, const LineReferences& references, ElementResolver& resolver,
                               std::int64_t responses) {
  for (const PositionNumber position : analysis_.Fields.Positions.all()) {
    const ActivePosition& facts = analysis_.Fields.Positions[position];
    if (!facts.PositionInUse) continue;
    const ElementIndex element = references.At(position).Element;
    if (position == references.RangePosition()) {
      NoteRange(line, references, resolver, responses);
    } else if (element == kUnspecifiedElement) {
      if (Building()) Note(ElementAt(line, references, position), line, references);
    } else if (element.value < 0) {
      for (const std::string& text : ReferenceTrouble(line, position, resolver)) console_.ShowWarning(text);
      throw Halt{FailureCode::InvalidElementReference, {}};
    }
  }
}

void DataNotes::NoteRange(const DataLine& line, const LineReferences& references, ElementResolver& resolver,
                          std::int64_t responses) {
  if (!Building()) return;
  const FacetNumber facet = analysis_.Fields.Positions[references.RangePosition()].PositionFacet;
  for (std::int64_t step = 1; step <= std::min(references.RangeLength(), responses); ++step) {
    const std::int32_t number = references.RangeNumber(step);
    if (resolver.Find(facet, number) == kUnspecifiedElement)
      Note({facet.value, BareText(number), number}, line, references);
  }
}

PositionNumber DataNotes::WithoutReference(const LineReferences& references) const {
  if (references.AllKnown()) return {0};
  for (const PositionNumber position : analysis_.Fields.Positions.all()) {
    const ElementIndex element = references.At(position).Element;
    const bool asked = analysis_.Fields.Positions[position].PositionInUse && position != references.RangePosition();
    if (asked && element.value < 0 && element != kUnspecifiedElement) return position;
  }
  return {0};
}

std::vector<std::string> DataNotes::ReferenceTrouble(const DataLine& line, PositionNumber position,
                                                     const ElementResolver& resolver) const {
  const ActivePosition& facts = analysis_.Fields.Positions[position];
  const std::int32_t column = facts.PositionColumn.value;
  std::vector<std::string> texts = {"  Invalid element identifier: \"" + QuotedLine(line.Text(column)) +
                                    "\" at facet location in data:" + GeneralText(column)};
  if (!resolver.TakesLabels(facts.PositionFacet)) texts.emplace_back("  Is this an element label? If so, Delements=LN");
  if (analysis_.Input.LineNumber == 1 && !IsNumeric(line.Text(line.FieldCount())))
    texts.emplace_back("  Is this a heading line? If so, put ; in front of it");
  return texts;
}

void DataNotes::NoteNeeded(const DataLine& line, const LineReferences& references, PositionNumber position) {
  if (!Building() && showUnspecified_) ShowFirst(ElementAt(line, references, position), line, references);
}

UnspecifiedElement DataNotes::ElementAt(const DataLine& line, const LineReferences& references,
                                        PositionNumber position) const {
  const ActivePosition& facts = analysis_.Fields.Positions[position];
  const std::int32_t facet = facts.PositionFacet.value;
  const std::int32_t number = references.At(position).Number;
  if (position == references.RangePosition()) return {facet, BareText(number), number};
  const std::string_view text = line.Text(facts.PositionColumn.value);
  if (number < 0 && analysis_.Settings.DelementsOption.find('N') != std::string::npos) {
    const std::optional<std::int32_t> plain = ParseElementNumber(text);
    if (plain && BareText(*plain) == text) return {facet, {}, *plain};
  }
  return {facet, std::string(text), number};
}

void DataNotes::Note(const UnspecifiedElement& element, const DataLine& line, const LineReferences& references) {
  unspecified_.Note(element);
  if (showUnspecified_) ShowFirst(element, line, references);
}

void DataNotes::ShowFirst(const UnspecifiedElement& element, const DataLine& line, const LineReferences& references) {
  showUnspecified_ = false;
  const std::string& raw = analysis_.Input.LastLine;
  const std::string processed = ProcessedLine(line, references, analysis_);
  console_.ShowWarning("In data: " + QuotedLine(raw));
  if (processed != raw) console_.ShowWarning("Processed: " + QuotedLine(processed));
  std::string check = "Check (1)? Unspecified element: facet:" + GeneralText(element.FacetNumber) +
                      " element:" + GeneralText(element.ElementNumber);
  if (!element.Label.empty()) check += " label: " + QuotedLine(element.Label);
  check += InLine();
  check += Building() ? " - see Table 2." : " - Specify Labels=Build to list in Table 2.";
  const std::string& delements = analysis_.Settings.DelementsOption;
  console_.ShowWarning(check + " Delements = " + (delements.empty() ? "N" : delements));
}

std::string DataNotes::InLine() const {
  const std::string line = " in line" + GeneralText(analysis_.Input.LineNumber);
  // Lines are counted through include files.
  const bool several = analysis_.Sources.size() == 1 && DataFileNames(analysis_.Settings.DataFileName).size() > 1;
  return several ? line + " of " + analysis_.CurrentDataFile : line;
}

void DataNotes::NoteInvalid(const DataLine& line, const LineReferences& references, std::string_view datum) {
  if (invalidSeen_.size() >= kMostInvalidValues) return;
  const std::string shown = QuotedLine(datum);
  if (!invalidSeen_.insert(shown).second) return;
  const std::string note = "Check (2)? Invalid datum location: " +
                           DatumLocation(line, references, analysis_.Fields.ActiveFacetCount(), shown) + InLine() +
                           ". Datum \"" + shown + "\" is too big or not a positive integer, treated as missing.";
  if (invalidSeen_.size() <= kInvalidValuesShown) {
    console_.ShowWarning(note);
  } else {
    console_.ReportLine(note);
  }
}

}  // namespace tessaly
