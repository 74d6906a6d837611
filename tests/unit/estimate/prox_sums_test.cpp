// What the state of its elements makes of an observation, and what elements collect from it.
#include "estimate/prox_sums.h"

#include <gtest/gtest.h>

#include "unit/model/scale_bed.h"
#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// Two positions of facet 1 (positive; elements 1 to 4) and facet 2 (elements 5 and 6), and a scale of raw categories
/// 1, 2 and 4.
struct ProxBed {
  Analysis A;
  TestFolder Folder;
  User Nobody;
  Console Silence;

  explicit ProxBed(bool sameFacet = false, bool secondNegative = false) {
    A.Facets = DefaultFacets(2);
    for (const auto& [facet, first, last] : {std::tuple{1, 1, 4}, {2, 5, 6}}) {
      A.Facets[{facet}].FacetFirstElement = {first};
      A.Facets[{facet}].FacetLastElement = {last};
      A.Facets[{facet}].FacetElementCount = last - first + 1;
    }
    A.Elements.Create(6);
    for (int e = 1; e <= 6; ++e) A.Elements.ElementMeasure[{e}] = 0.5F * static_cast<float>(e);
    A.Fields.Positions.add({{1}, {1}, true});
    A.Fields.Positions.add({{sameFacet ? 1 : 2}, {2}, true});
    A.Scales = OneScale({0, 0, 0}, 4);
    A.Scales.CategoryOrdinal(kScale, 0) = A.Scales.CategoryOrdinal(kScale, 3) = -1;
    for (const auto& [raw, ordinal] : {std::pair{1, 0}, {2, 1}, {4, 2}})
      A.Scales.CategoryOrdinal(kScale, raw) = static_cast<std::int16_t>(ordinal);
    A.Models.Statements.add({});
    if (secondNegative) {
      A.Models.Statements[{0}].ModelNegative.assign(2, 0);
      A.Models.Statements[{0}].ModelNegative[{2}] = 1;
    }
    A.Models.Cells.add({});
  }

  /// Passes the observations {elements of both positions, raw response, replication} to `visit`.
  template <class Visit>
  void Pass(const std::vector<std::tuple<int, int, int, float>>& observations, Visit visit) {
    ObservationWriter writer(Folder.Path(), ElementLayout(A.Facets, A.Fields));
    for (const auto& [first, second, response, replication] : observations) {
      const ElementIndex elements[] = {{first}, {second}};
      writer.Write({{0}, replication, static_cast<std::int16_t>(response)}, elements);
    }
    ObservationStore store = std::move(writer).Seal();
    RunControl control(Nobody);
    for (const Observation& obs : ObservationPass(store, A, control, Silence)) visit(obs);
  }
};

TEST(ReadStatus, FollowsFromElementsAndCategory) {
  using S = ElementStatus;
  struct Case {
    std::string_view What;
    int First, Second;
    S FirstStatus, SecondStatus;
    int Raw;
    ReadStatus Status;
    float Sum;
  };
  for (const Case& c : {
           Case{"both active", 1, 6, S::Active, S::Active, 2, ReadStatus::Usable, -2.5F},
           Case{"anchored", 1, 6, S::Anchored, S::Active, 2, ReadStatus::Usable, -2.5F},
           Case{"one extreme", 1, 6, S::Minimum, S::Active, 2, ReadStatus::OneExtreme, -2.5F},
           Case{"one datum", 1, 6, S::Active, S::OneDatum, 2, ReadStatus::OneExtreme, -2.5F},
           Case{"two extreme", 1, 6, S::Minimum, S::Maximum, 2, ReadStatus::SeveralExtreme, -2.5F},
           Case{"unmeasurable", 1, 6, S::Active, S::Unmeasurable, 2, ReadStatus::ElementNotInUse, 0},
           Case{"unobserved", 1, 6, S::Unobserved, S::Active, 2, ReadStatus::ElementNotInUse, 0},
           Case{"one position empty", 0, 6, S::Active, S::Active, 2, ReadStatus::Usable, -3},
           Case{"both empty", 0, 0, S::Active, S::Active, 2, ReadStatus::NothingMeasurable, 0},
           Case{"extreme alone", 1, 0, S::Maximum, S::Active, 2, ReadStatus::NothingMeasurable, 0.5F},
           Case{"category not in use", 1, 6, S::Active, S::Active, 3, ReadStatus::CategoryNotInUse, -2.5F},
           Case{"not in use, one extreme", 1, 6, S::Minimum, S::Active, 0, ReadStatus::CategoryNotInUse, -2.5F},
           Case{"not in use, nothing measurable", 0, 0, S::Active, S::Active, 0, ReadStatus::NothingMeasurable, 0},
       }) {
    ProxBed bed;
    bed.A.Elements.ElementStatus[{1}] = c.FirstStatus;
    bed.A.Elements.ElementStatus[{6}] = c.SecondStatus;
    bed.Pass({{c.First, c.Second, c.Raw, 1.0F}}, [&](const Observation& obs) {
      EXPECT_EQ(static_cast<int>(obs.Status), static_cast<int>(c.Status)) << c.What;
      EXPECT_EQ(obs.MeasureSum, c.Sum) << c.What;
    });
  }
  ProxBed bed;
  bed.A.Scales.Scales[kScale].ScaleTopCategory = 0;
  bed.Pass({{1, 6, 2, 1.0F}}, [](const Observation& obs) { EXPECT_EQ(obs.Status, ReadStatus::CategoryNotInUse); });
}

TEST(ReadStatus, AnElementAgainstItselfCancelsOut) {
  ProxBed bed(true, true);
  std::vector<float> sums;
  std::vector<ReadStatus> statuses;
  bed.Pass({{2, 2, 2, 1.0F}, {2, 4, 2, 1.0F}}, [&](const Observation& obs) {
    sums.push_back(obs.MeasureSum);
    statuses.push_back(obs.Status);
  });
  EXPECT_EQ(statuses, (std::vector{ReadStatus::NothingMeasurable, ReadStatus::Usable}));
  EXPECT_EQ(sums, (std::vector{0.0F, -1.0F}));
}

TEST(ObservedTotals, CountWeightedOrdinalsAndTurnNegativePositionsOver) {
  ProxBed bed(true, true);
  bed.A.Elements.ElementStatus[{3}] = ElementStatus::Maximum;
  ObservedTotals totals(bed.A.Elements, bed.A.Scales);
  // Element 3 is extreme: its opponent does not count that line. The last line has no weight.
  bed.Pass({{1, 2, 2, 2.5F}, {2, 1, 4, 0.5F}, {1, 3, 4, 1.0F}, {1, 2, 4, 0.0F}},
           [&](const Observation& obs) { totals.Add(obs); });
  EXPECT_TRUE(totals.DataSeen());
  const auto expect = [&](int e, double score, double possible, double count, double raw, float smallest) {
    const ElementRecord& record = bed.A.Elements.ElementStats[{e}];
    EXPECT_DOUBLE_EQ(record.ObservedScore, score) << e;
    EXPECT_DOUBLE_EQ(record.PossibleScore, possible) << e;
    EXPECT_DOUBLE_EQ(record.ObservedCount, count) << e;
    EXPECT_DOUBLE_EQ(record.RawScore, raw) << e;
    EXPECT_FLOAT_EQ(record.SmallestWeight, smallest) << e;
  };
  // Ordinals 1, 2 of top 2; raw responses 2, 4, turned over from the top of 2.
  expect(1, 2.5 * 1 + 0.5 * 0, 6, 3, 2.5F * 2 + 0.5F * (2 - 4), 0.5F);
  expect(2, 2.5 * 1 + 0.5 * 2, 6, 3, 2.5F * (2 - 2) + 0.5F * 4, 0.5F);
  expect(3, 0, 2, 1, 2 - 4, 1);
  EXPECT_EQ(bed.A.Scales.CategoryCount(kScale, 1), 2.5);
  EXPECT_EQ(bed.A.Scales.CategoryCount(kScale, 2), 0.5);
}

TEST(ObservedTotals, CountBeyondTheWholeNumbersOfASingle) {
  ProxBed bed;
  ObservedTotals totals(bed.A.Elements, bed.A.Scales);
  bed.Pass({{1, 5, 4, 16777216.0F}, {1, 5, 1, 1.0F}, {1, 5, 1, 1.0F}, {1, 5, 1, 1.0F}},
           [&](const Observation& obs) { totals.Add(obs); });
  const ElementRecord& record = bed.A.Elements.ElementStats[{5}];
  EXPECT_EQ(record.ObservedCount, 16777219);
  EXPECT_EQ(record.RawScore, 67108867);
}

TEST(ProxSums, CountTheMeasuresOfTheOthersAsOftenAsTheWeightSays) {
  ProxBed bed;
  Table<ElementIndex, EstimationSums> sums(6);
  ProxSums prox(sums);
  bed.Pass({{1, 5, 2, 2.0F}, {1, 6, 2, 1.0F}}, [&](const Observation& obs) { prox.Add(obs); });
  EXPECT_DOUBLE_EQ(sums[{1}].ExpectedScore, 2 * -2.5 - 3);
  EXPECT_FLOAT_EQ(sums[{1}].Information, 2 * 2.5F * 2.5F + 3 * 3);
  EXPECT_FLOAT_EQ(sums[{1}].ProxWeight, 3);
  EXPECT_DOUBLE_EQ(sums[{5}].ExpectedScore, 2 * 0.5);
  EXPECT_FALSE(prox.PoissonSeen());
}

}  // namespace
}  // namespace tessaly
