#include "estimate/scale_order.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

using ScaleKey = std::tuple<std::vector<double>, std::int32_t, std::string, std::int32_t>;

ScaleKey KeyOf(ScaleNumber scale, const FieldMap& fields, const ElementTable& elements, const ModelTables& models,
               const ScaleTables& scales) {
  const StatementNumber number = scales.Scales[scale].ScaleModel;
  const ModelStatement& statement = models.Statements[number];
  const auto cell = static_cast<std::size_t>(scales.Scales[scale].ScaleCell.value);
  const auto positions = static_cast<std::size_t>(fields.ActiveFacetCount());
  std::vector<double> numbers;
  std::string text;
  for (const PositionNumber position : fields.Positions.all()) {
    double value = LeadingNumber(statement.PositionText(position));
    if (statement.IsHash(position)) {
      const ElementIndex element = models.CellElements[cell * positions + static_cast<std::size_t>(position.value) - 1];
      value = element.value > 0 ? elements.ElementNumber[element] : 0;
    }
    numbers.push_back(value);
    text += statement.PositionText(position) + ",";
  }
  text += statement.ScaleField();
  return {numbers, statement.ModelDefinition.value, UpperAscii(text), scale.value};
}

bool IsReported(ScaleNumber scale, const ScaleTables& scales) {
  if (scales.Scales[scale].ScaleTopCategory <= 0) return false;
  const double* counts = scales.CategoryRawCount.Row(scale);
  return std::any_of(counts, counts + scales.CategoryRawCount.Categories(), [](double count) { return count > 0; });
}

}  // namespace

void OrderScales(const FieldMap& fields, const ElementTable& elements, const ModelTables& models, ScaleTables& scales) {
  std::vector<ScaleKey> keys;
  for (const ScaleNumber scale : scales.Scales.all()) {
    if (IsReported(scale, scales)) keys.push_back(KeyOf(scale, fields, elements, models, scales));
  }
  std::sort(keys.begin(), keys.end());
  scales.ScaleOrder.clear();
  for (const ScaleKey& key : keys) scales.ScaleOrder.push_back({std::get<3>(key)});
}

}  // namespace tessaly
