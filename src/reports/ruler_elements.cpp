#include "reports/ruler_elements.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>

namespace tessaly {

namespace {

class Placing {
 public:
  Placing(const RulerAxis& axis, bool extremesByMeasure, const Analysis& analysis)
      : axis_(axis),
        extremesByMeasure_(extremesByMeasure),
        settings_(analysis.Settings),
        elements_(analysis.Elements) {}

  PlacedFacet Place(std::span<const ElementIndex> elements) const {
    PlacedFacet facet;
    for (const ElementIndex element : elements) {
      if (const auto line = LineOf(element)) facet.ByNumber.push_back({*line, element});
    }
    std::sort(facet.ByNumber.begin(), facet.ByNumber.end(), [](const PlacedElement& a, const PlacedElement& b) {
      return std::tie(a.Line, a.Element) < std::tie(b.Line, b.Element);
    });
    facet.MostOnLine = MostOnLine(facet.ByNumber);
    return facet;
  }

  std::vector<PlacedElement> SortedByLabel(std::vector<PlacedElement> placed) const {
    std::sort(placed.begin(), placed.end(), [&](const PlacedElement& a, const PlacedElement& b) {
      return std::tie(a.Line, elements_.ElementLabel[a.Element], a.Element) <
             std::tie(b.Line, elements_.ElementLabel[b.Element], b.Element);
    });
    return placed;
  }

 private:
  std::optional<std::int32_t> LineOf(ElementIndex element) const {
    const ElementStatus status = elements_.ElementStatus[element];
    if (WithoutMeasure(status)) return {};
    if (status == ElementStatus::Anchored && settings_.OmitUnobserved && elements_.ElementStats[element].AllCount == 0)
      return {};
    if (status == ElementStatus::Minimum && !extremesByMeasure_) return EndLine(settings_.Uscale < 0);
    if (status == ElementStatus::Maximum && !extremesByMeasure_) return EndLine(settings_.Uscale > 0);
    const double measure = double(settings_.UserMeasure(elements_.ElementMeasure[element]));
    if (std::isnan(measure)) return {};
    return axis_.LineOf(measure);
  }

  std::int32_t EndLine(bool top) const { return top ? 0 : axis_.LastLine; }

  static std::int32_t MostOnLine(const std::vector<PlacedElement>& placed) {
    std::int32_t most = 0;
    std::int32_t onLine = 0;
    for (std::size_t at = 0; at < placed.size(); ++at) {
      onLine = at > 0 && placed[at].Line == placed[at - 1].Line ? onLine + 1 : 1;
      most = std::max(most, onLine);
    }
    return most;
  }

  const RulerAxis& axis_;
  bool extremesByMeasure_;
  const Settings& settings_;
  const ElementTable& elements_;
};

}  // namespace

std::span<const ElementIndex> ElementsOf(const Facet& facet, std::span<const ElementIndex> elements) {
  const auto first = std::lower_bound(elements.begin(), elements.end(), facet.FacetFirstElement);
  return {first, std::upper_bound(first, elements.end(), facet.FacetLastElement)};
}

PlacedFacets PlaceElements(std::span<const ElementIndex> elements, const RulerColumns& columns, const RulerAxis& axis,
                           bool extremesByMeasure, const Analysis& analysis) {
  const Placing placing(axis, extremesByMeasure, analysis);
  PlacedFacets facets(analysis.FacetCount());
  for (const FacetColumn& column : columns.Facets) {
    PlacedFacet& facet = facets[column.Facet];
    if (facet.ByNumber.empty()) facet = placing.Place(ElementsOf(analysis.Facets[column.Facet], elements));
    if (column.Kind == ColumnKind::Labels && facet.ByLabel.empty())
      facet.ByLabel = placing.SortedByLabel(facet.ByNumber);
  }
  return facets;
}

}  // namespace tessaly
