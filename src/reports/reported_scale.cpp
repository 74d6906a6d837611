#include "reports/reported_scale.h"

#include <algorithm>

#include "support/bytes.h"

namespace tessaly {

ReportedScale DescribeScale(ScaleNumber scale, const Analysis& analysis) {
  const ScaleTables& scales = analysis.Scales;
  const ModelStatement& statement = analysis.Models.Statements[scales.Scales[scale].ScaleModel];
  ReportedScale reported;
  reported.Number = scale;
  reported.Type = statement.ModelType;
  reported.Top = scales.Scales[scale].ScaleTopCategory;
  if (statement.ModelDefinition != kNoDefinition)
    reported.Definition = &analysis.Models.Definitions[statement.ModelDefinition];
  reported.RawCategory = scales.RawCategories(scale);
  return reported;
}

std::string CategoryNames::LabelOf(std::int32_t raw) const {
  const auto at = static_cast<std::size_t>(raw);
  return at < Labels.size() ? Labels[at] : std::string();
}

CategoryNames NamesOfCategories(const RatingScaleDefinition* definition, const TextEncoding& encoding) {
  constexpr std::int32_t kNarrowest = 7;
  CategoryNames names;
  if (definition == nullptr) return names;
  for (const CategoryEntry& entry : definition->Categories) {
    names.HasAnchor = names.HasAnchor || entry.Flag == 'A';
    // Entries begin with the category of missing data, which has no place in a table.
    if (&entry == &definition->Categories.front()) continue;
    names.Labels.push_back(entry.Label + (entry.Recode.empty() ? "" : " (" + entry.Recode + ")"));
    if (names.Labels.back().empty()) continue;
    names.Width = std::max({names.Width, DisplayLength(names.Labels.back(), encoding), kNarrowest});
  }
  return names;
}

}  // namespace tessaly
