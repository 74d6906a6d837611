#include "output/reference_texts.h"

#include <vector>

#include "data/data_line.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

bool IsDataField(std::string_view text) {
  const std::string line = "0," + std::string(text);
  std::string work;
  std::vector<DataField> fields;
  SplitAnyLine(line, work, fields);
  return fields.size() == 3 && fields[2].Text == text;
}

ReferenceTexts::ReferenceTexts(const Analysis& analysis)
    : facets_(analysis.Facets),
      elements_(analysis.Elements),
      nullElement_(analysis.Settings.NullElement),
      resolver_(facets_, analysis.Fields, analysis.Elements, nullElement_, silence_),
      texts_(analysis.Elements.ElementCount()),
      nullTexts_(analysis.Facets.size()) {}

const std::string& ReferenceTexts::TextOf(FacetNumber facet, ElementIndex element) {
  std::string& text = element == kNoElement ? nullTexts_[facet] : texts_[element];
  if (text.empty()) text = FindText(facet, element);
  return text;
}

std::string ReferenceTexts::FindText(FacetNumber facet, ElementIndex element) {
  const bool null = element == kNoElement;
  const std::string number = BareText(null ? nullElement_ : elements_.ElementNumber[element]);
  if (Means(facet, number, element)) return number;
  const std::string_view label = null ? facets_[facet].FacetNullLabel : elements_.ElementLabel[element];
  std::string key(TrimBlanks(label.substr(0, label.find(':'))));
  if (Means(facet, key, element)) return key;
  return null && facets_[facet].HasElements() ? TextOf(facet, facets_[facet].FacetFirstElement) : number;
}

bool ReferenceTexts::Means(FacetNumber facet, const std::string& text, ElementIndex element) {
  if (!IsDataField(text)) return false;
  const ResolvedReference reference = resolver_.Resolve(facet, Replaced(text, '_', '-'));
  return !reference.Range && reference.Single.Element == element;
}

}  // namespace tessaly
