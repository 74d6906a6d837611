#include "graphs/curve_table.h"

#include <algorithm>
#include <cmath>

#include "model/response_moments.h"

namespace tessaly {

namespace {

constexpr auto kFarthestDrawn = double(kFarthestLogit);

}  // namespace

CurveTable::CurveTable(const GraphScale& scale, const MeasureGrid& grid, double unit, ResponseKernel& kernel)
    : top_(scale.TopCategory),
      rows_(grid.Rows()),
      cells_(static_cast<std::size_t>(5 + 4 * top_) * static_cast<std::size_t>(rows_)) {
  for (std::int32_t row = 1; row <= rows_; ++row) {
    const double measure = grid.MeasureOf(row);
    cells_[Cell(row, kMeasure)] = static_cast<float>(measure);
    FillRow(row, scale, static_cast<float>(std::clamp(measure / unit, -kFarthestDrawn, kFarthestDrawn)), kernel);
  }
  const std::span<const float> information = Column(Information());
  largestInformation_ = std::max(1.0F, *std::max_element(information.begin(), information.end()));
  for (std::int32_t k = 0; k <= top_; ++k) {
    const std::span<const float> column = Column(CategoryInformation(k));
    largestCategoryInformation_ =
        std::max(largestCategoryInformation_, *std::max_element(column.begin(), column.end()));
  }
}

void CurveTable::FillRow(std::int32_t row, const GraphScale& scale, float logit, ResponseKernel& kernel) {
  // Asked for the highest count that it can compute, the kernel leaves none away, however high the measure is.
  const bool counts = scale.ModelKind == ModelType::Poisson && top_ > 1;
  const std::int32_t computed = counts ? kProbabilityTop : std::max(top_, 1);
  const float expected = kernel.CategoryProbabilities(scale.Number, scale.ModelKind, computed, logit);
  const float variance = ObservationMoments(kernel.Table(), computed, 0, expected).ResponseVariance;
  const auto put = [&](std::int32_t column, float value) { cells_[Cell(row, column)] = value; };

  put(Expected(), expected + static_cast<float>(scale.BottomCategory));
  put(Information(), variance);
  double cumulative = 0;
  for (std::int32_t k = 0; k <= top_; ++k) {
    const float p = kernel.Probability(k);
    put(Probability(k), p);
    put(CategoryInformation(k), p * variance);
    if (k == top_) break;
    // Rounded terms may add up to more than 1.
    cumulative = std::min(cumulative + static_cast<double>(p), 1.0);
    put(Cumulative(k), static_cast<float>(cumulative));
    const float upper = kernel.Probability(k + 1);
    put(Conditional(k), p == 0 || upper == 0 ? kNoCurveValue : upper / (p + upper));
  }
}

std::int32_t NearestGridRow(float value, std::span<const float> column) {
  const auto at = [&](std::int32_t row) { return column[static_cast<std::size_t>(row - 1)]; };
  std::int32_t low = 1;
  auto high = static_cast<std::int32_t>(column.size());
  while (high - low > 1 && at(low) < at(high)) {
    const std::int32_t middle = low + (high - low) / 2;
    if (at(middle) == value) return middle;
    (at(middle) < value ? low : high) = middle;
  }
  return std::fabs(at(high) - value) < std::fabs(at(low) - value) ? high : low;
}

}  // namespace tessaly
