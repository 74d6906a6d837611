// A store gives back what was written, whatever the counts of records and the widths of elements.
#include "data/observation_store.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// Facets with these numbers of elements, each in one position.
ElementLayout LayoutOf(const std::vector<int>& counts, std::vector<int>& firsts) {
  FacetTable facets(static_cast<std::int32_t>(counts.size()));
  FieldMap fields;
  std::int32_t next = 1;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const FacetNumber facet{static_cast<std::int32_t>(i) + 1};
    facets[facet].FacetElementCount = counts[i];
    if (counts[i] > 0) facets[facet].FacetFirstElement = {next};
    firsts.push_back(next);
    next += counts[i];
    fields.Positions.add({facet, {facet.value}, true});
  }
  return {facets, fields};
}

TEST(ObservationStore, GivesBackWhatWasWrittenAcrossAllBlockBoundaries) {
  const TestFolder folder;
  for (const auto& facets : std::vector<std::pair<std::vector<int>, int>>{
           {{255, 1}, 2}, {{256, 255, 0, 65535}, 5}, {{65536, 16777215}, 6}, {{16777216, 3}, 5}, {{0, 0}, 0}}) {
    const std::vector<int>& counts = facets.first;
    for (const std::int64_t records : {1, 4999, 5000, 5001, 10000, 12800, 64000, 64001}) {
      std::vector<int> firsts;
      const ElementLayout layout = LayoutOf(counts, firsts);
      EXPECT_EQ(layout.ElementRecordLength(), facets.second);
      std::mt19937 random(static_cast<unsigned>(records));
      std::vector<std::vector<ElementIndex>> elements;
      ObservationWriter writer(folder.Path(), layout);
      const auto record = [](std::int64_t n) {
        const auto number = static_cast<std::int32_t>(n);
        return ObservationRecord{
            {number * 7}, 0.5F * static_cast<float>(number), static_cast<std::int16_t>(number % 256)};
      };
      for (std::int64_t n = 1; n <= records; ++n) {
        elements.emplace_back();
        for (std::size_t i = 0; i < counts.size(); ++i) {
          // None, the first, the last or any other element of the facet.
          const int count = counts[i];
          const auto any = static_cast<int>(random() % 0x7FFFFFFF);
          const int places[] = {0, 1, count, count == 0 ? 0 : 1 + any % count};
          const int place = count == 0 ? 0 : places[random() % 4];
          elements.back().push_back(place == 0 ? kNoElement : ElementIndex{firsts[i] + place - 1});
        }
        writer.Write(record(n), elements.back().data());
      }
      ObservationStore store = std::move(writer).Seal();
      ASSERT_EQ(store.ValidResponses(), records);
      std::int64_t wrong = 0;
      const auto check = [&](std::int64_t n) {
        std::vector<ElementIndex> read(counts.size());
        const ObservationRecord got = store.Read(n, read.data());
        const ObservationRecord put = record(n);
        const bool same =
            got.ObsCell == put.ObsCell && got.Replication == put.Replication && got.ObsResponse == put.ObsResponse;
        if (!same || read != elements[static_cast<std::size_t>(n - 1)]) ++wrong;
      };
      check(records);  // still in memory
      for (int pass = 0; pass < 2; ++pass)
        for (std::int64_t n = 1; n <= records; ++n) check(n);
      for (int jump = 0; jump < 50; ++jump) check(1 + static_cast<std::int64_t>(random()) % records);
      EXPECT_EQ(wrong, 0) << records << " records of " << facets.second << " bytes";
    }
  }
}

}  // namespace
}  // namespace tessaly
