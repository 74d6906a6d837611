#include "reports/model_text.h"

#include <algorithm>
#include <optional>

#include "spec/element_lookup.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

struct NamedElement {
  std::int32_t Number = 0;
  std::string Label;
};

/// The model statement of one scale.
class StatementText {
 public:
  StatementText(ScaleNumber scale, const Analysis& analysis)
      : analysis_(analysis),
        cell_(analysis.Scales.Scales[scale].ScaleCell),
        statement_(analysis.Models.Statements[analysis.Scales.Scales[scale].ScaleModel]) {}

  std::string Text() const {
    std::string text = statement_.ScaleField();
    std::string note;
    for (PositionNumber position = statement_.ModelLow.last(); position >= statement_.ModelLow.first(); --position) {
      const std::optional<NamedElement> element = Element(position);
      text = Field(position, element) + "," + text;
      if (!element || element->Label.empty() || element->Label == BareText(element->Number)) continue;
      note += "  " + FacetOf(position).FacetLabel + ": " + element->Label;
    }
    if (!note.empty()) text += "  ; " + note;
    return std::string(TrimRight(text));
  }

 private:
  const Facet& FacetOf(PositionNumber position) const {
    return analysis_.Facets[analysis_.Fields.Positions[position].PositionFacet];
  }

  /// The one element that the scale has in `position`, or nothing.
  std::optional<NamedElement> Element(PositionNumber position) const {
    if (statement_.IsHash(position)) {
      const auto positions = static_cast<std::size_t>(analysis_.Fields.ActiveFacetCount());
      const auto cell = static_cast<std::size_t>(cell_.value);
      return Named(analysis_.Models.CellElements[cell * positions + static_cast<std::size_t>(position.value) - 1],
                   position);
    }
    const std::int32_t number = statement_.ModelLow[position];
    if (number < 0 || number != statement_.ModelHigh[position]) return {};
    // A copy, because the look-up remembers what it found last.
    Facet facet = FacetOf(position);
    const ElementIndex element = FindElement(number, facet, analysis_.Elements, analysis_.Settings.NullElement);
    if (element < kNoElement) return {};
    return Named(element, position);
  }

  NamedElement Named(ElementIndex element, PositionNumber position) const {
    if (element <= kNoElement) return {analysis_.Settings.NullElement, FacetOf(position).FacetNullLabel};
    return {analysis_.Elements.ElementNumber[element], analysis_.Elements.ElementLabel[element]};
  }

  std::string Field(PositionNumber position, const std::optional<NamedElement>& element) const {
    const std::string& field = statement_.PositionText(position);
    if (!statement_.IsHash(position) || !element) return field;
    const std::size_t hash = field.find('#');
    const std::size_t end = std::min(field.find_first_not_of("#-0123456789", hash), field.size());
    return field.substr(0, hash) + BareText(element->Number) + field.substr(end);
  }

  const Analysis& analysis_;
  CellNumber cell_;
  const ModelStatement& statement_;
};

}  // namespace

std::string ModelText(ScaleNumber scale, const Analysis& analysis) {
  return StatementText(scale, analysis).Text();
}

}  // namespace tessaly
