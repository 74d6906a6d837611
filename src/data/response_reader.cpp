#include "data/response_reader.h"

#include <algorithm>
#include <optional>

#include "spec/scale_code.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// A response that is not to be stored.
constexpr std::int16_t kNoCategory = -1;

/// The category that `response` stands for on `scale`; `kNoCategory` if it is above the top.
std::int16_t ScoredCategory(std::int32_t response, const Scale& scale) {
  if (response > kHighestCategory) return kNoCategory;
  if (scale.ScaleDichotomyCut > 0) return response >= scale.ScaleDichotomyCut ? std::int16_t{1} : std::int16_t{0};
  return response > scale.ScaleTopCategory ? kNoCategory : static_cast<std::int16_t>(response);
}

}  // namespace

ResponseReader::ResponseReader(Analysis& analysis, ObservationWriter& writer, DataNotes& notes, QueryTrace& trace)
    : analysis_(analysis),
      counters_(analysis.Counters),
      writer_(writer),
      notes_(notes),
      trace_(trace),
      cells_(analysis.Models, analysis.Scales, analysis.Elements),
      matcher_(analysis.Models.Statements),
      missingCodes_(analysis.Settings.MissingCodes),
      plans_(analysis.Models.Statements.size()),
      storedElements_(static_cast<std::size_t>(analysis.Fields.ActiveFacetCount())) {
  cells_.MakeInitialCells();
  std::sort(missingCodes_.begin(), missingCodes_.end());
  for (const RatingScaleDefinition& definition : analysis.Models.Definitions) recodes_.emplace_back(definition.Recodes);
  for (const StatementNumber number : plans_.all()) {
    const ModelStatement& statement = analysis.Models.Statements[number];
    StatementPlan& plan = plans_[number];
    plan.Type = statement.ModelType;
    if (!statement.ModelHasHash) plan.OnlyCell = statement.ModelFirstCell;
    const DefinitionNumber definition = statement.ModelDefinition;
    if (definition != kNoDefinition && !analysis.Models.Definitions[definition].Recodes.empty())
      plan.Recodes = &recodes_[static_cast<std::size_t>(definition.value)];
    for (const PositionNumber position : statement.ModelLow.all())
      if (!statement.UsesElement(position)) plan.WithoutElement.push_back(static_cast<std::size_t>(position.value - 1));
  }
}

inline StatementNumber ResponseReader::Match(const DataLine& line, const LineReferences& references) {
  StatementNumber statement;
  if (references.AllKnown() && !trace_.On()) {
    statement = matcher_.First(references.Numbers());
    if (statement == kNoStatement) ++analysis_.Models.UnmatchedResponses;
  } else {
    statement = MatchInOrder(line, references);
  }
  if (statement != kNoStatement) ++analysis_.Models.Statements[statement].ModelResponses;
  return statement;
}

inline void ResponseReader::Store(const ObservationRecord& record, ScaleNumber scale, const ElementIndex* elements) {
  ++counters_.ValidResponses;
  writer_.Write(record, elements);
  ScaleTables& scales = analysis_.Scales;
  scales.CategoryRawCount(scale, record.ObsResponse) += double(record.Replication);
  scales.RawTopCategory = std::max(scales.RawTopCategory, record.ObsResponse);
}

void ResponseReader::Read(const DataLine& line, const LineReferences& references, const DataField& response) {
  if (trace_.On()) TraceDatum(line, references, response.Text);
  if ((response.Text.empty() || !missingCodes_.empty()) && CountMissing(response.Text)) return;
  ++(line.Replication() == 0 ? counters_.NoReplicationCount : counters_.ResponsesFound);
  const StatementNumber statement = Match(line, references);
  if (statement == kNoStatement) return;
  const StatementPlan& plan = plans_[statement];
  if (plan.Type == ModelType::Missing) return trace_.Show(QueryState::TreatedAsMissing);

  const ElementIndex* elements = references.Elements();
  const CellNumber cell = plan.OnlyCell != kNoCell ? plan.OnlyCell : cells_.CellFor(statement, elements);
  const ScaleNumber scaleNumber = analysis_.Models.Cells[cell].CellScale;
  const Scale& scale = analysis_.Scales.Scales[scaleNumber];
  const bool plain = response.Number >= 0 && plan.Recodes == nullptr;
  std::int16_t category = plain ? ScoredCategory(response.Number, scale) : kNoCategory;
  if (category == kNoCategory) category = Category(line, references, response, plan, scale);
  if (category == kNoCategory) return;
  if (!plan.WithoutElement.empty()) {
    std::copy(elements, elements + storedElements_.size(), storedElements_.begin());
    for (const std::size_t at : plan.WithoutElement) storedElements_[at] = kNoElement;
    elements = storedElements_.data();
  }
  Store({cell, line.Replication(), category}, scaleNumber, elements);
}

void ResponseReader::TraceDatum(const DataLine& line, const LineReferences& references, std::string_view datum) {
  trace_.Show(QueryState::Datum, DatumLocation(line, references, analysis_.Fields.ActiveFacetCount(), datum) +
                                     " ; datum number" + GeneralText(counters_.ResponsesFound + 1));
}

bool ResponseReader::CountMissing(std::string_view datum) {
  if (datum.empty()) {
    ++counters_.MissingNullCount;
  } else if (std::binary_search(missingCodes_.begin(), missingCodes_.end(), datum)) {
    ++counters_.MissingCodeCount;
  } else {
    return false;
  }
  trace_.Show(QueryState::NoDatum, datum);
  return true;
}

StatementNumber ResponseReader::MatchInOrder(const DataLine& line, const LineReferences& references) {
  const auto& statements = analysis_.Models.Statements;
  // Only a trace shows the statements that are passed over.
  StatementNumber number =
      trace_.On() ? StatementNumber{0} : matcher_.FirstToSettle(references.Numbers(), references.Elements());
  for (; number != kNoStatement && number.value < statements.size(); ++number) {
    const StatementMeeting meeting = MeetStatement(statements[number], references.Numbers(), references.Elements());
    if (meeting.Result == StatementMeeting::Outcome::Matches) {
      trace_.Show(QueryState::Matched, " model" + GeneralText(number.value + 1));
      return number;
    }
    const std::int32_t element = references.At(meeting.Position).Number;
    if (meeting.Result == StatementMeeting::Outcome::Mismatch) {
      ShowMismatch(number, meeting.Position, element);
      continue;
    }
    ++counters_.UnspecifiedCount;
    notes_.NoteNeeded(line, references, meeting.Position);
    const FacetNumber facet = analysis_.Fields.Positions[meeting.Position].PositionFacet;
    trace_.Show(QueryState::Unspecified, "facet" + GeneralText(facet.value) + ", element" + GeneralText(element));
    return kNoStatement;
  }
  ++analysis_.Models.UnmatchedResponses;
  trace_.Show(QueryState::NoStatement);
  return kNoStatement;
}

void ResponseReader::ShowMismatch(StatementNumber statement, PositionNumber position, std::int32_t number) {
  if (!trace_.On()) return;
  const std::string element = GeneralText(number);
  std::string detail = "facet" + GeneralText(analysis_.Fields.Positions[position].PositionFacet.value);
  detail.append(", element").append(element).append(": \"").append(TrimBlanks(element)).append("\" did not match \"");
  detail.append(analysis_.Models.Statements[statement].PositionText(position)).append("\" in model");
  trace_.Show(QueryState::Mismatch, detail + GeneralText(statement.value + 1));
}

std::int16_t ResponseReader::Category(const DataLine& line, const LineReferences& references, DataField response,
                                      const StatementPlan& plan, const Scale& scale) {
  std::string recoded;
  if (plan.Recodes != nullptr) {
    if (const std::optional<std::int32_t> target = plan.Recodes->Target(response.Text)) {
      recoded = BareText(*target);
      response = DataField(recoded);
      trace_.Show(QueryState::Recoded, "\"" + recoded + "\"");
    }
  }
  std::int32_t number = response.Number;
  if (number < 0) {
    if (response.Text.find_first_of("-_") != std::string_view::npos) {
      ++counters_.NegativeCount;
      trace_.Show(QueryState::Negative);
      return kNoCategory;
    }
    const IntegerReading reading = ParseInt(response.Text, kHighestCategory);
    number = reading.Good() ? reading.Value : kHighestCategory + 1;
  }
  const std::int16_t category = ScoredCategory(number, scale);
  if (category != kNoCategory) return category;
  ++counters_.InvalidCount;
  notes_.NoteInvalid(line, references, response.Text);
  trace_.Show(QueryState::NonNumeric);
  return kNoCategory;
}

}  // namespace tessaly
