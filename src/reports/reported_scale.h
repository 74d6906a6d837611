// One scale as the reports of its categories see it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "state/analysis.h"

namespace tessaly {

/// What reports need to know of a scale before they write about it.
struct ReportedScale {
  ScaleNumber Number{0};
  ModelType Type = ModelType::RatingScale;
  /// Highest ordinal category.
  std::int32_t Top = 0;
  /// Nothing for a scale that was declared by a code alone.
  const RatingScaleDefinition* Definition = nullptr;
  /// The raw category of each ordinal, 0..Top.
  std::vector<std::int32_t> RawCategory;

  /// Whether it is a rating scale of more than one step: only those have a structure to be drawn.
  bool HasStructure() const { return Type == ModelType::RatingScale && Top > 1; }
};

ReportedScale DescribeScale(ScaleNumber scale, const Analysis& analysis);

/// What the definition of a scale says about its categories.
struct CategoryNames {
  /// Label of each raw category from 0, with its recode list in parentheses behind it; empty for none.
  std::vector<std::string> Labels;
  /// Report columns of the longest label; 0 without labels.
  std::int32_t Width = 0;
  /// A threshold is anchored.
  bool HasAnchor = false;

  std::string LabelOf(std::int32_t raw) const;
};

CategoryNames NamesOfCategories(const RatingScaleDefinition* definition, const TextEncoding& encoding);

}  // namespace tessaly
