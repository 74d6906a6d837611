// Scale tables with one scale, ready for the kernel.
#pragma once

#include <algorithm>
#include <vector>

#include "model/response_kernel.h"
#include "state/scales.h"

namespace tessaly {

constexpr ScaleNumber kScale{0};

/// One scale with categories 0..`limit`; `steps` from category 0 on (entry 0 is a discrimination).
inline ScaleTables OneScale(const std::vector<float>& steps, std::int32_t limit = 0) {
  ScaleTables scales;
  const auto top = static_cast<std::int32_t>(steps.size()) - 1;
  scales.TopCategory = scales.RawTopCategory = scales.RawCategoryLimit =
      static_cast<std::int16_t>(std::max({top, limit, 1}));
  const std::int32_t categories = scales.TopCategory + 1;
  scales.Scales.add({});
  scales.Scales[kScale].ScaleTopCategory = static_cast<std::int16_t>(top);
  scales.CategoryRawCount.Create(1, categories);
  scales.CategoryCount.Create(1, categories);
  scales.CategoryExpected.Create(1, categories);
  scales.CategoryInformation.Create(1, categories);
  scales.CategoryStep.Create(1, categories);
  scales.CategoryStepPrevious.Create(1, categories);
  scales.CategoryAnchor.Create(1, categories);
  scales.CategoryOrdinal.Create(1, categories);
  scales.CategoryStatistics.Create(1, categories);
  for (std::int32_t k = 0; k < categories; ++k) scales.CategoryOrdinal(kScale, k) = static_cast<std::int16_t>(k);
  for (std::int32_t k = 0; k <= top; ++k) scales.CategoryStep(kScale, k) = steps[static_cast<std::size_t>(k)];
  return scales;
}

}  // namespace tessaly
