// Data lines that an analysis with the same specification can read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/statement_matcher.h"
#include "output/reference_texts.h"
#include "output/text_output.h"
#include "state/analysis.h"

namespace tessaly {

/// One response of a data line.
struct WrittenResponse {
  /// The model statement that must match.
  StatementNumber Statement{0};
  float Replication = 1;
  /// By position, entry 0 is position 1; 0 for no element.
  const ElementIndex* Elements = nullptr;
  std::string_view Response;
  /// What stands in the comment of the line; empty for none.
  std::string_view Comment;
};

/// Writes one line for each response, `R2,1,3,5,2 ; 3`: a weight other than 1, an element reference for each column
/// that stands on data lines, the response, a comment. If `Dvalues=` has a range, a line has a response, or an empty
/// place, for each of its elements, and consecutive responses of the same line share it.
class DataLineWriter {
 public:
  DataLineWriter(const Analysis& analysis, TextOutput& output);

  void Write(const WrittenResponse& response);
  /// Writes the line at hand. Call it behind the last response.
  void Finish();

  /// The position that a range of `Dvalues=` fills, 0 for none.
  PositionNumber RangePosition() const { return rangePosition_; }
  /// Columns that `Dvalues=` fills with line numbers. Nobody can put a response on a line of a certain number, so that
  /// their elements stand on the line.
  const std::vector<ColumnNumber>& CountingColumns() const { return countingColumns_; }

 private:
  struct ColumnPlan {
    FacetNumber Facet;
    /// From 0; nothing for a column that no statement looks at.
    std::optional<std::size_t> Position;
  };

  void PlanSupplied(ColumnNumber column);
  std::string HeadOf(const WrittenResponse& response);
  std::optional<std::size_t> FindPlace(const WrittenResponse& response, std::size_t from);
  bool PlaceTakes(std::size_t place, const WrittenResponse& response);

  const Analysis& analysis_;
  TextOutput& output_;
  ReferenceTexts references_;
  StatementMatcher matcher_;
  std::vector<ColumnPlan> plans_;
  std::vector<ColumnNumber> countingColumns_;
  PositionNumber rangePosition_{0};
  bool rangeInUse_ = false;
  /// One for each response of a line.
  std::vector<ElementReference> range_;
  std::vector<std::int32_t> numbers_;

  /// The line at hand: up to its responses, these, and their comments.
  std::string head_;
  std::vector<std::string> responses_;
  std::vector<std::string> comments_;
  /// Places from here on are free; 0 if there is no line at hand.
  std::size_t nextPlace_ = 0;
};

}  // namespace tessaly
