#include "graphs/graph_scales.h"

#include <utility>

#include "reports/model_text.h"
#include "reports/reported_scale.h"
#include "support/number_text.h"

namespace tessaly {

std::string GraphScale::CategoryLabel(std::int32_t k) const {
  return BareText(CategoryValue[static_cast<std::size_t>(k)]);
}

std::vector<GraphScale> PrepareGraphs(const Analysis& analysis) {
  std::vector<GraphScale> scales;
  scales.reserve(analysis.Scales.ScaleOrder.size());
  for (const ScaleNumber number : analysis.Scales.ScaleOrder) {
    ReportedScale reported = DescribeScale(number, analysis);
    GraphScale scale;
    scale.Number = number;
    scale.ModelKind = reported.Type;
    scale.TopCategory = static_cast<std::int32_t>(reported.RawCategory.size()) - 1;
    scale.BottomCategory = analysis.Scales.Scales[number].ScaleBottomRaw;
    scale.CategoryValue = std::move(reported.RawCategory);
    scale.Title = "Model = " + ModelText(number, analysis);
    scales.push_back(std::move(scale));
  }
  return scales;
}

}  // namespace tessaly
