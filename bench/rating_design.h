// A rating design in memory and its observations in a store: what the benchmarks of passes run over.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "data/observation_store.h"
#include "state/analysis.h"
#include "support/work_file.h"

namespace tessaly {

/// A small generator of our own, the same everywhere.
class Random {
 public:
  std::uint32_t Below(std::uint32_t limit) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>(state_ >> 33) % limit;
  }

 private:
  std::uint64_t state_ = 20240229;
};

/// Ratings in categories 0..kTop by a rating scale of equidistant steps.
struct RatingDesign {
  static constexpr std::int32_t kTop = 4;

  /// Elements of each facet.
  std::vector<std::int32_t> Elements;
  /// Data are commonly sorted by the first facet; the others come as they come.
  bool Sorted = true;

  Analysis Tables() const {
    Analysis a;
    const auto facets = static_cast<std::int32_t>(Elements.size());
    a.Facets = DefaultFacets(facets);
    std::int32_t count = 0;
    for (std::int32_t f = 1; f <= facets; ++f) {
      Facet& facet = a.Facets[{f}];
      facet.FacetElementCount = Elements[static_cast<std::size_t>(f - 1)];
      facet.FacetFirstElement = {count + 1};
      count += facet.FacetElementCount;
      facet.FacetLastElement = {count};
      a.Fields.Columns.add({});
      a.Fields.Positions.add({FacetNumber{f}, ColumnNumber{f}, true});
    }
    a.Elements.Create(count);
    Random random;
    for (float& measure : a.Elements.ElementMeasure) measure = static_cast<float>(random.Below(4000)) / 1000.0F - 2.0F;
    for (ElementRecord& record : a.Elements.ElementStats) record.AllCount = 1;
    a.Models.Statements.add({});
    a.Models.Cells.add({});
    Scale scale;
    scale.ScaleTopCategory = kTop;
    a.Scales.Scales.add(scale);
    a.Scales.TopCategory = kTop;
    a.Scales.RawTopCategory = kTop;
    a.Scales.CategoryStep.Create(1, kTop + 1);
    a.Scales.CategoryAnchor.Create(1, kTop + 1);
    a.Scales.CategoryCount.Create(1, kTop + 1);
    a.Scales.CategoryExpected.Create(1, kTop + 1);
    a.Scales.CategoryInformation.Create(1, kTop + 1);
    a.Scales.CategoryOrdinal.Create(1, kTop + 1);
    a.Scales.CategoryStatistics.Create(1, kTop + 1);
    for (std::int32_t k = 0; k <= kTop; ++k) {
      a.Scales.CategoryOrdinal({0}, k) = static_cast<std::int16_t>(k);
      if (k > 0) a.Scales.CategoryStep({0}, k) = static_cast<float>(k) - 2.5F;
    }
    return a;
  }

  /// The elements of observation `number` of `count`, one for each facet.
  void Draw(std::int64_t number, std::int64_t count, Random& random, ElementIndex* elements) const {
    std::int32_t before = 0;
    for (std::size_t f = 0; f < Elements.size(); ++f) {
      const bool inOrder = f == 0 && Sorted;
      const std::int64_t within =
          inOrder ? number * Elements[f] / count : random.Below(static_cast<std::uint32_t>(Elements[f]));
      elements[f] = {before + 1 + static_cast<std::int32_t>(within)};
      before += Elements[f];
    }
  }

  ObservationStore Observations(const Analysis& a, std::int64_t count) const {
    ObservationWriter writer(TemporaryFolder(), ElementLayout(a.Facets, a.Fields));
    Random random;
    std::vector<ElementIndex> elements(Elements.size());
    for (std::int64_t n = 0; n < count; ++n) {
      Draw(n, count, random, elements.data());
      writer.Write({{0}, 1.0F, static_cast<std::int16_t>(random.Below(kTop + 1))}, elements.data());
    }
    return std::move(writer).Seal();
  }
};

}  // namespace tessaly
