#include "estimate/constraint_conflicts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "support/number_text.h"

namespace tessaly {
namespace {

bool UsedInEstimation(const ModelStatement& statement) {
  return statement.ModelResponses > 0 && statement.ModelType != ModelType::Missing;
}

/// Turning all positions changes nothing between facets: only some of those that both statements use count.
bool TurnedAgainst(const ModelStatement& one, const ModelStatement& other) {
  bool alike = false;
  bool opposite = false;
  for (const PositionNumber position : one.ModelLow.all()) {
    if (!one.UsesElement(position) || !other.UsesElement(position)) continue;
    (one.Negative(position) == other.Negative(position) ? alike : opposite) = true;
  }
  return alike && opposite;
}

bool CenteredByItsMean(const Facet& facet, const ElementTable& elements) {
  if (facet.FacetCenter == Centering::NotCentered || !facet.HasElements()) return false;
  for (const ElementIndex element : facet.Elements())
    if (elements.ElementStatus[element] == ElementStatus::Anchored) return false;
  return true;
}

/// The first centered facet of whose elements the statements take different ones, 0 for none.
FacetNumber CenteredAcross(const ModelStatement& one, const ModelStatement& other, const Analysis& analysis) {
  for (const PositionNumber position : one.ModelLow.all()) {
    if (!one.UsesElement(position) || !other.UsesElement(position)) continue;
    if (one.ModelLow[position] == other.ModelLow[position] && one.ModelHigh[position] == other.ModelHigh[position])
      continue;
    const FacetNumber facet = analysis.Fields.Positions[position].PositionFacet;
    if (CenteredByItsMean(analysis.Facets[facet], analysis.Elements)) return facet;
  }
  return {0};
}

/// Empty if there is none.
std::string CenteringConflict(const Analysis& analysis) {
  const ModelStatement* first = nullptr;
  for (const ModelStatement& statement : analysis.Models.Statements) {
    if (!UsedInEstimation(statement)) continue;
    if (first == nullptr) first = &statement;
    if (!TurnedAgainst(*first, statement)) continue;
    const FacetNumber facet = CenteredAcross(*first, statement, analysis);
    if (facet.value == 0) continue;
    const ModelStatement& turned = statement.HasNegative() ? statement : *first;
    return "Models= " + turned.StatementText() + ": - here, but not everywhere, turns the origin of facet" +
           GeneralText(facet.value) + " round, so it cannot be centered. Please use Noncenter=" + BareText(facet.value);
  }
  return {};
}

/// The lowest anchored category without responses of a scale that has free categories, 0 for none.
std::int32_t AnchoredWithoutResponses(ScaleNumber scale, const ScaleTables& scales) {
  const CategoryAnchor* anchors = scales.CategoryAnchor.Row(scale);
  const std::int32_t top = scales.Scales[scale].ScaleTopCategory;
  if (std::find(anchors + 1, anchors + top + 1, CategoryAnchor::Free) == anchors + top + 1) return 0;
  for (std::int32_t k = 1; k <= top; ++k)
    if (anchors[k] == CategoryAnchor::Anchored && scales.CategoryCount(scale, k) == 0) return k;
  return 0;
}

/// Of the first scale that has one. Empty if there is none.
std::string ThresholdConflict(const Analysis& analysis) {
  const ScaleTables& scales = analysis.Scales;
  for (const ScaleNumber scale : scales.Scales.all()) {
    const ModelStatement& statement = analysis.Models.Statements[scales.Scales[scale].ScaleModel];
    if (statement.ModelType != ModelType::RatingScale || scales.Scales[scale].ScaleTopCategory <= 1) continue;
    const std::int32_t category = AnchoredWithoutResponses(scale, scales);
    if (category == 0) continue;
    return "Models= " + statement.StatementText() + ": category" +
           GeneralText(scales.RawCategories(scale)[static_cast<std::size_t>(category)]) +
           " is anchored and has no responses, and others are not anchored, so measures can run away. Please anchor "
           "all categories, or not this one";
  }
  return {};
}

}  // namespace

std::vector<std::string> ConstraintConflicts(const Analysis& analysis) {
  std::vector<std::string> conflicts;
  for (std::string& conflict : std::array{CenteringConflict(analysis), ThresholdConflict(analysis)})
    if (!conflict.empty()) conflicts.push_back(std::move(conflict));
  return conflicts;
}

}  // namespace tessaly
