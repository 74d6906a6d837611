#include "estimate/prepare_scales.h"

#include <algorithm>

#include "support/expression.h"

namespace tessaly {

bool HasValue(const CategoryEntry& entry) {
  return EvaluateExpression(entry.Value) != 0 || entry.Value.find('0') != std::string::npos;
}

namespace {

/// Entries of a definition begin with category -1.
constexpr std::size_t kEntryOfCategoryZero = 1;

void CreateTables(ScaleTables& scales) {
  const std::int32_t count = scales.ScaleCount();
  scales.TopCategory = scales.RawCategoryLimit;
  const std::int32_t categories = std::max<std::int32_t>(scales.TopCategory, 1) + 1;
  scales.CategoryCount.Create(count, categories);
  scales.CategoryExpected.Create(count, categories);
  scales.CategoryInformation.Create(count, categories);
  scales.CategoryStep.Create(count, categories);
  scales.CategoryStepPrevious.Create(count, categories);
  scales.CategoryAnchor.Create(count, categories);
  scales.CategoryOrdinal.Create(count, categories);
  scales.CategoryStatistics.Create(count, categories);
}

void SetStep(ScaleNumber scale, std::int32_t category, float value, bool anchored, ScaleTables& scales) {
  scales.CategoryStep(scale, category) = value;
  scales.CategoryStepPrevious(scale, category) = value;
  scales.CategoryAnchor(scale, category) = anchored ? CategoryAnchor::Anchored : CategoryAnchor::StartingValue;
}

void ApplyThresholds(ScaleNumber scale, const RatingScaleDefinition& definition, float uscale, ScaleTables& scales) {
  const auto& entries = definition.Categories;
  for (std::size_t at = kEntryOfCategoryZero; at < entries.size(); ++at) {
    const auto category = static_cast<std::int32_t>(at - kEntryOfCategoryZero);
    if (category > scales.TopCategory || !HasValue(entries[at])) continue;
    const bool anchored = entries[at].Flag == 'A';
    SetStep(scale, category, EvaluateExpression(entries[at].Value) / uscale, anchored, scales);
    auto& top = scales.Scales[scale].ScaleTopCategory;
    if (anchored && top < category) top = static_cast<std::int16_t>(category);
  }
}

void PrepareDiscrimination(ScaleNumber scale, const RatingScaleDefinition* definition, ScaleTables& scales) {
  SetStep(scale, 0, 1.0F, true, scales);
  if (definition == nullptr) return;
  scales.CategoryAnchor(scale, 0) = CategoryAnchor::Free;
  if (definition->Categories.size() <= kEntryOfCategoryZero) return;
  const CategoryEntry& entry = definition->Categories[kEntryOfCategoryZero];
  const float value = EvaluateExpression(entry.Value);
  if (value > 0) SetStep(scale, 0, value, entry.Flag == 'A', scales);
}

}  // namespace

void PrepareScales(const ModelTables& models, const Settings& settings, ScaleTables& scales) {
  CreateTables(scales);
  for (const ScaleNumber scale : scales.Scales.all()) {
    const ModelStatement& statement = models.Statements[scales.Scales[scale].ScaleModel];
    const RatingScaleDefinition* definition =
        statement.ModelDefinition == kNoDefinition ? nullptr : &models.Definitions[statement.ModelDefinition];
    scales.Scales[scale].ScaleBottomRaw = 0;
    for (std::int32_t k = 0; k <= scales.TopCategory; ++k) {
      scales.CategoryCount(scale, k) = scales.CategoryRawCount(scale, k);
      scales.CategoryOrdinal(scale, k) = static_cast<std::int16_t>(k);
    }
    if (statement.ModelType != ModelType::RatingScale) {
      PrepareDiscrimination(scale, definition, scales);
    } else if (definition != nullptr) {
      ApplyThresholds(scale, *definition, settings.Uscale, scales);
    }
  }
}

}  // namespace tessaly
