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

/// Ratings in categories 0..Top by rating scales of equidistant steps.
struct RatingDesign {
  /// Elements of each facet.
  std::vector<std::int32_t> Elements;
  /// Data are commonly sorted by the first facet; the others come as they come.
  bool Sorted = true;
  std::int32_t Top = 4;
  /// One scale for each element of the last facet, in place of one for all.
  bool ScaleOfItsOwn = false;

  std::int32_t Scales() const { return ScaleOfItsOwn ? Elements.back() : 1; }
  /// Threshold k = 1..Top of scale `scale`, from 0.
  static float Step(std::int32_t scale, std::int32_t k) {
    return static_cast<float>(k) - 2.5F + 0.01F * static_cast<float>(scale);
  }

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
    AddScales(a);
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
      const std::int32_t cell = ScaleOfItsOwn ? elements.back().value - (a.Elements.ElementCount() - Scales()) - 1 : 0;
      const std::uint32_t response = random.Below(static_cast<std::uint32_t>(Top) + 1);
      writer.Write({{cell}, 1.0F, static_cast<std::int16_t>(response)}, elements.data());
    }
    return std::move(writer).Seal();
  }

 private:
  void AddScales(Analysis& a) const {
    ScaleTables& tables = a.Scales;
    tables.TopCategory = static_cast<std::int16_t>(Top);
    tables.RawTopCategory = static_cast<std::int16_t>(Top);
    tables.CategoryStep.Create(Scales(), Top + 1);
    tables.CategoryAnchor.Create(Scales(), Top + 1);
    tables.CategoryCount.Create(Scales(), Top + 1);
    tables.CategoryExpected.Create(Scales(), Top + 1);
    tables.CategoryInformation.Create(Scales(), Top + 1);
    tables.CategoryOrdinal.Create(Scales(), Top + 1);
    tables.CategoryStatistics.Create(Scales(), Top + 1);
    for (std::int32_t s = 0; s < Scales(); ++s) {
      Scale scale;
      scale.ScaleTopCategory = static_cast<std::int16_t>(Top);
      a.Models.Cells.add({tables.Scales.add(scale), StatementNumber{0}});
      for (std::int32_t k = 0; k <= Top; ++k) {
        tables.CategoryOrdinal({s}, k) = static_cast<std::int16_t>(k);
        if (k > 0) tables.CategoryStep({s}, k) = Step(s, k);
      }
    }
  }
};

}  // namespace tessaly
