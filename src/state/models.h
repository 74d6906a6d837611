// Model statements, rating scale definitions, and the cells that data make of them.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "state/indexes.h"

namespace tessaly {

enum class ModelType : std::int16_t {
  /// `R`: rating scale or partial credit.
  RatingScale = 0,
  /// `B` and `D`: binomial trials and dichotomies.
  Binomial = 1,
  /// `P`: Poisson counts.
  Poisson = 2,
  /// `M`: matched responses are treated as missing.
  Missing = -1,
};

/// `ModelLow` of a position that any element matches (`?`, `$`, `#` or empty), and of one that is ignored (`X`).
constexpr std::int32_t kAnyElement = -1;
constexpr std::int32_t kIgnoredPosition = -2;

/// One line of `Models=`.
struct ModelStatement {
  /// Field 0 the scale code; 1..ActiveFacetCount the normalised positions; then scale as written, weight, spare text.
  std::vector<std::string> ModelField;
  /// Element number range of each position.
  Table<PositionNumber, std::int32_t> ModelLow;
  Table<PositionNumber, std::int32_t> ModelHigh;
  /// Positions marked `-`: their measure enters with the opposite sign and their element's score is reversed. Empty if
  /// none.
  Table<PositionNumber, char> ModelNegative;
  bool ModelHasHash = false;
  DefinitionNumber ModelDefinition = kNoDefinition;
  tessaly::ModelType ModelType = tessaly::ModelType::RatingScale;
  /// Unobserved intermediate categories stay in the structure.
  bool ModelKeep = false;
  float ModelWeight = 1;
  /// Responses matched to the statement.
  std::int64_t ModelResponses = 0;
  /// The only cell of the statement, `kNoCell` or `kSeveralCells`.
  CellNumber ModelFirstCell = kNoCell;
  /// Where the statement stands in the specification; 0 for the default statement.
  std::int64_t LineNumber = 0;

  bool HasNegative() const { return !ModelNegative.empty(); }
  bool Negative(PositionNumber position) const { return HasNegative() && ModelNegative[position] != 0; }
  /// The normalised text of a position.
  const std::string& PositionText(PositionNumber position) const {
    return ModelField[static_cast<std::size_t>(position.value)];
  }
  bool IsHash(PositionNumber position) const { return PositionText(position).find('#') != std::string::npos; }
  /// Whether the position is marked for bias analysis.
  bool AsksForBias(PositionNumber position) const { return PositionText(position).find('B') != std::string::npos; }
  /// Whether the position carries an element: not `X` and not empty.
  bool UsesElement(PositionNumber position) const {
    return ModelLow[position] != kIgnoredPosition && !PositionText(position).empty();
  }
  /// The scale name or code as written.
  const std::string& ScaleField() const { return ModelField[ModelField.size() - 3]; }
  const std::string& WeightField() const { return ModelField[ModelField.size() - 2]; }
  /// The statement as the user reads it: positions, scale, and the weight of what is not treated as missing.
  std::string StatementText() const {
    std::string text;
    for (const PositionNumber position : ModelLow.all()) text += PositionText(position) + ",";
    text += ScaleField();
    return ModelType == tessaly::ModelType::Missing ? text : text + "," + WeightField();
  }
};

/// One category line of a rating scale block.
struct CategoryEntry {
  std::string Label;
  /// Threshold in user units, or the discrimination of a binomial or Poisson scale, as written; empty for none.
  std::string Value;
  /// First letter of the flag in capitals; 'A' anchors the value, blank for none.
  char Flag = ' ';
  /// The recode list as written, values joined with `+`.
  std::string Recode;
  /// The line had something behind the category.
  bool Given = false;
};

/// One rule of a recode table, in the order written.
struct RecodeRule {
  /// The value as written in the data, compared exactly.
  std::string Text;
  /// Numeric range `Low`-`High`, if `IsRange`.
  double Low = 0;
  double High = 0;
  bool IsRange = false;
  /// Target category; -1 makes the datum missing.
  std::int32_t Target = 0;
};

/// One rating scale block.
struct RatingScaleDefinition {
  std::string Name;
  /// Scale code in capitals.
  std::string Code;
  /// Specific: each statement or `#` element has a scale of its own. Otherwise all that name the block share one.
  bool Specific = false;
  bool Keep = false;
  std::string Subtitle;
  /// Entries for categories -1, 0, 1, ... in this order.
  std::vector<CategoryEntry> Categories;
  std::vector<RecodeRule> Recodes;
};

/// A combination of statement and `#` elements that occurs in the data.
struct ModelCell {
  ScaleNumber CellScale{0};
  StatementNumber CellModel{0};
};

/// `Models=`, `Rating scale=` and what the data make of them.
struct ModelTables {
  Table<StatementNumber, ModelStatement, 0> Statements;
  Table<DefinitionNumber, RatingScaleDefinition, 0> Definitions;
  Table<CellNumber, ModelCell, 0> Cells;
  /// Element vectors of the cells, `ActiveFacetCount` record indexes for each, in cell order; 0 where there is no `#`.
  std::vector<ElementIndex> CellElements;
  /// Responses that matched no statement.
  std::int64_t UnmatchedResponses = 0;
};

}  // namespace tessaly
