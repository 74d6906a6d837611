// The scales that can be drawn, and what their curves are called.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "state/analysis.h"

namespace tessaly {

/// One scale as its curves see it.
struct GraphScale {
  ScaleNumber Number{0};
  ModelType ModelKind = ModelType::RatingScale;
  /// Highest ordinal category.
  std::int32_t TopCategory = 0;
  /// What ordinal scores lack to the data's own numbering.
  std::int32_t BottomCategory = 0;
  /// The category of the data that each ordinal stands for, 0..TopCategory.
  std::vector<std::int32_t> CategoryValue;
  /// "Model = ..." as in the reports.
  std::string Title;

  /// The data's category of ordinal `k` (0..TopCategory) as text.
  std::string CategoryLabel(std::int32_t k) const;
};

/// All reported scales, in the order of the reports.
std::vector<GraphScale> PrepareGraphs(const Analysis& analysis);

}  // namespace tessaly
