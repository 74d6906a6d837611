// The model curves of one scale, on a grid of measures.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graphs/graph_axes.h"
#include "graphs/graph_scales.h"
#include "model/response_kernel.h"

namespace tessaly {

/// Stands in a table where there is no value.
constexpr float kNoCurveValue = -1.0F;

/// One table of curves: rows from 1 at the lowest measure, columns from 1 in the order of the members below, with t the
/// scale's top category. Measures are in user units relative to the difficulty.
class CurveTable {
 public:
  /// The curves of `scale` over `grid`. `unit`: user units to a logit. Poisson counts run to the end of the kernel's
  /// table, beyond the highest observed count.
  CurveTable(const GraphScale& scale, const MeasureGrid& grid, double unit, ResponseKernel& kernel);

  std::int32_t Rows() const { return rows_; }
  static constexpr std::int32_t kMeasure = 1;
  /// P(k), k = 0..t.
  std::int32_t Probability(std::int32_t k) const { return 2 + k; }
  /// On the data's numbering.
  std::int32_t Expected() const { return 3 + top_; }
  /// P(0) + ... + P(k), k = 0..t-1.
  std::int32_t Cumulative(std::int32_t k) const { return 4 + top_ + k; }
  /// Model variance V (Lord 1980; Samejima 1969).
  std::int32_t Information() const { return 4 + 2 * top_; }
  /// P(k) V, k = 0..t.
  std::int32_t CategoryInformation(std::int32_t k) const { return 5 + 2 * top_ + k; }
  /// P(k+1) / (P(k) + P(k+1)), k = 0..t-1; `kNoCurveValue` if either is 0.
  std::int32_t Conditional(std::int32_t k) const { return 6 + 3 * top_ + k; }

  float At(std::int32_t row, std::int32_t column) const { return cells_[Cell(row, column)]; }
  std::span<const float> Column(std::int32_t column) const {
    return std::span(cells_).subspan(Cell(1, column), static_cast<std::size_t>(rows_));
  }
  /// Largest information, and largest category information; both at least 1.
  float LargestInformation() const { return largestInformation_; }
  float LargestCategoryInformation() const { return largestCategoryInformation_; }

 private:
  std::size_t Cell(std::int32_t row, std::int32_t column) const {
    return static_cast<std::size_t>(column - 1) * static_cast<std::size_t>(rows_) + static_cast<std::size_t>(row - 1);
  }
  void FillRow(std::int32_t row, const GraphScale& scale, float logit, ResponseKernel& kernel);

  std::int32_t top_;
  std::int32_t rows_;
  /// Column by column.
  std::vector<float> cells_;
  float largestInformation_ = 1;
  float largestCategoryInformation_ = 1;
};

/// The row, from 1, of the value nearest to `value` in a column that never falls; the lower one of two as near. At
/// least one row.
std::int32_t NearestGridRow(float value, std::span<const float> column);

}  // namespace tessaly
