// The responses as a rectangle: one side for some facets, the other for others.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "data/observation_pass.h"
#include "interaction/term_numbers.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// The rows or the columns: combinations of elements of some facets that the data hold, numbered from 1 in the order of
/// the elements, the last facet fastest.
class MatrixSide {
 public:
  /// Throws `Halt{IncompatibleFile}` if the facets have too many combinations to tell them apart.
  MatrixSide(const std::vector<FacetNumber>& facets, const Analysis& analysis);

  /// Whether `obs` has an element of each facet. Where a facet has several positions the last element counts.
  bool Holds(const Observation& obs) const { return KeyOf(obs) >= 0; }
  void Meet(const Observation& obs) { numbers_.Meet(KeyOf(obs)); }
  /// Numbers all combinations that were met.
  void Number() { keys_ = numbers_.Number(); }
  std::int32_t Size() const { return static_cast<std::int32_t>(keys_.size()); }
  /// Number of the combination of `obs`, 0 for none.
  std::int32_t NumberOf(const Observation& obs) const;
  /// The elements of a combination, by facet.
  std::vector<ElementIndex> Elements(std::int32_t number) const;

 private:
  struct Digit {
    std::int32_t FirstElement;
    std::int64_t Elements;
    /// Where the facet stands in an observation, the last first; entry 0 is position 1.
    std::vector<std::size_t> Places;
  };

  /// -1 if an element is missing.
  std::int64_t KeyOf(const Observation& obs) const;

  std::vector<Digit> digits_;
  TermNumbers numbers_;
  std::vector<std::int64_t> keys_;
};

/// What a cell makes of several responses. `Unstated` keeps the first one without a word.
enum class RepeatRule : std::int8_t { Unstated, First, Last, Sum };

/// One raw response, after recoding, for each row and column.
class ResponseMatrix {
 public:
  /// Passes twice over all observations, whatever became of them in the estimation. Throws `Halt{IncompatibleFile}` if
  /// the matrix has too many cells, or a cell too large a sum.
  ResponseMatrix(const std::vector<FacetNumber>& rows, const std::vector<FacetNumber>& columns, RepeatRule rule,
                 const Analysis& analysis, ObservationStore& store, RunControl& control, Console& console);

  const MatrixSide& Rows() const { return rows_; }
  const MatrixSide& Columns() const { return columns_; }
  /// Nothing for an empty cell. Numbers from 1.
  std::optional<std::int32_t> At(std::int32_t row, std::int32_t column) const;
  /// Some cell had several responses.
  bool Repeats() const { return repeats_; }
  /// Lowest and highest response of all cells; 0 if all are empty.
  std::int32_t Low() const { return low_; }
  std::int32_t High() const { return high_; }

 private:
  void CreateCells();
  void Put(std::int16_t& cell, std::int32_t response, RepeatRule rule);
  std::size_t PlaceOf(std::int32_t row, std::int32_t column) const {
    return static_cast<std::size_t>(row - 1) * static_cast<std::size_t>(columns_.Size()) +
           static_cast<std::size_t>(column - 1);
  }

  MatrixSide rows_;
  MatrixSide columns_;
  /// The response and 1; 0 for an empty cell.
  std::vector<std::int16_t> cells_;
  bool repeats_ = false;
  std::int32_t low_ = 0;
  std::int32_t high_ = 0;
};

}  // namespace tessaly
