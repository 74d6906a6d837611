// One response of a data line: matched to a statement, recoded, checked, stored.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/data_line.h"
#include "data/data_notes.h"
#include "data/line_references.h"
#include "data/model_cells.h"
#include "data/observation_store.h"
#include "data/query_trace.h"
#include "data/recode.h"
#include "data/statement_matcher.h"
#include "state/analysis.h"

namespace tessaly {

/// Turns responses into stored observations and counts what becomes of each. A response that cannot be used is counted,
/// never a failure.
class ResponseReader {
 public:
  /// Makes the initial cells of `analysis`.
  ResponseReader(Analysis& analysis, ObservationWriter& writer, DataNotes& notes, QueryTrace& trace);

  /// Reads `response`, a field of `line`, to the elements that `references` has at hand.
  void Read(const DataLine& line, const LineReferences& references, const DataField& response);

 private:
  /// What reading a response to one statement needs to know.
  struct StatementPlan {
    ModelType Type = ModelType::RatingScale;
    const RecodeTable* Recodes = nullptr;
    /// The cell of a statement without `#`, else `kNoCell`.
    CellNumber OnlyCell = kNoCell;
    /// Positions, from 0, that take no element.
    std::vector<std::size_t> WithoutElement;
  };

  void TraceDatum(const DataLine& line, const LineReferences& references, std::string_view datum);
  bool CountMissing(std::string_view datum);
  StatementNumber Match(const DataLine& line, const LineReferences& references);
  StatementNumber MatchInOrder(const DataLine& line, const LineReferences& references);
  void ShowMismatch(StatementNumber statement, PositionNumber position, std::int32_t number);
  std::int16_t Category(const DataLine& line, const LineReferences& references, DataField response,
                        const StatementPlan& plan, const Scale& scale);
  void Store(const ObservationRecord& record, ScaleNumber scale, const ElementIndex* elements);

  Analysis& analysis_;
  DataCounters& counters_;
  ObservationWriter& writer_;
  DataNotes& notes_;
  QueryTrace& trace_;
  ModelCells cells_;
  StatementMatcher matcher_;
  std::vector<std::string> missingCodes_;
  std::vector<RecodeTable> recodes_;
  Table<StatementNumber, StatementPlan, 0> plans_;
  std::vector<ElementIndex> storedElements_;
};

}  // namespace tessaly
