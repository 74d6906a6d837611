// Model cells and scales: what the statements and the elements that the data bring together make of each other.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "state/elements.h"
#include "state/models.h"
#include "state/scales.h"

namespace tessaly {

/// Makes and finds cells. A statement without `#` has one cell; one with `#` has a cell for each combination of
/// elements in its `#` positions. Statements that share a definition share a scale, unless the definition is specific
/// or the statement has a `#`.
class ModelCells {
 public:
  /// The tables must hold no cells and scales yet, and `models` its final statements.
  ModelCells(ModelTables& models, ScaleTables& scales, ElementTable& elements);

  /// Makes the cells of all statements without `#` that are not of type `M`, in statement order.
  void MakeInitialCells();

  /// The cell of `statement`, not of type `M`, for `elements` (entry 0 is position 1, 0 for the null element), made if
  /// it is new. Throws `Halt{TooManyModels}` if there is no room for another scale.
  CellNumber CellFor(StatementNumber statement, const ElementIndex* elements);

 private:
  CellNumber MakeCell(StatementNumber statement, const ElementIndex* elements);
  ScaleNumber ScaleFor(StatementNumber statement);
  ScaleNumber MakeScale(StatementNumber statement);
  bool HasElements(CellNumber cell, StatementNumber statement, const ElementIndex* elements) const;
  std::uint64_t Hash(StatementNumber statement, const ElementIndex* elements) const;

  ModelTables& models_;
  ScaleTables& scales_;
  ElementTable& elements_;
  std::size_t positions_ = 0;
  /// Positions with `#`, from 0.
  Table<StatementNumber, std::vector<std::size_t>, 0> hashPositions_;
  std::unordered_multimap<std::uint64_t, CellNumber> cellsByElements_;
  /// The scale of each shared definition; -1 as long as there is none.
  Table<DefinitionNumber, ScaleNumber, 0> sharedScale_;
};

}  // namespace tessaly
