#include "reports/element_order.h"

#include <gtest/gtest.h>

namespace tessaly {
namespace {

struct Bed {
  Facet TheFacet;
  ElementTable Elements;

  Bed() {
    struct Row {
      std::string_view Label;
      ElementStatus Status;
      float Measure, Infit, Outfit, InfitZ, OutfitZ, AllCount;
    };
    using S = ElementStatus;
    const Row rows[] = {
        {"cat", S::Active, 0.5F, 1.2F, 1.1F, 0.9F, 0.5F, 5},   // 1: underfit 1.2, z .9
        {"Cat", S::Active, -1, 0.5F, 1.5F, -2, 2, 5},          // 2: overfit of 1 / .5 against 1.5; z of equal sizes
        {"b", S::Anchored, 0.5F, 0.25F, 1, -3, 0, 5},          // 3: overfit of 4
        {"catalogue", S::Maximum, 3, 1, 1, 0, 0, 5},           // 4
        {"", S::Minimum, -4, 1, 1, 0, 0, 5},                   // 5
        {"\xC3\xA4", S::Unmeasurable, 0, 1, 1, 0, 0, 5},       // 6: a letter beyond ASCII
        {"a", S::Active, -0.25F, 2.5F, 0.4F, 1.7F, -1.7F, 5},  // 7: 2.5 either way; z of equal sizes
        {"never", S::Unobserved, 0, 1, 1, 0, 0, 0},            // 8
        {"none", S::Anchored, 1, 1.2F, 1.2F, 0.9F, 0.9F, 0},   // 9: without a count; ties with 1
    };
    const auto count = static_cast<std::int32_t>(std::size(rows));
    Elements.Create(count);
    TheFacet.FacetFirstElement = {1};
    TheFacet.FacetLastElement = {count};
    for (std::int32_t e = 1; e <= count; ++e) {
      const Row& row = rows[e - 1];
      Elements.ElementLabel[{e}] = row.Label;
      Elements.ElementStatus[{e}] = row.Status;
      Elements.ElementMeasure[{e}] = row.Measure;
      Elements.ElementStats[{e}].AllCount = row.AllCount;
      ElementFit& fit = Elements.Fit[{e}];
      fit.InfitMeanSquare = row.Infit;
      fit.OutfitMeanSquare = row.Outfit;
      fit.InfitZStd = row.InfitZ;
      fit.OutfitZStd = row.OutfitZ;
    }
  }
  std::vector<int> Order(std::string_view letters, bool omit) const {
    User user;
    RunControl control(user);
    std::vector<int> order;
    std::vector<ElementIndex> all;
    for (const ElementIndex element : TheFacet.Elements()) all.push_back(element);
    for (const ElementIndex element : SortElements(all, Elements, letters, omit, control))
      order.push_back(element.value);
    return order;
  }
};

TEST(SortElements, FollowsEachLetterWithTheNumberLast) {
  const Bed bed;
  for (const auto& [letters, order] : std::vector<std::pair<std::string_view, std::vector<int>>>{
           {"N", {1, 2, 3, 4, 5, 6, 7, 9}},
           {"n", {9, 7, 6, 5, 4, 3, 2, 1}},
           {"AN", {5, 2, 7, 3, 1, 4, 9, 6}},
           {"aN", {6, 9, 4, 1, 3, 7, 2, 5}},
           // Minimum first, Maximum last of those measured whatever their measures say; ties by number.
           {"MN", {5, 2, 7, 1, 3, 9, 4, 6}},
           {"mN", {4, 9, 1, 3, 7, 2, 5, 6}},
           {"Mn", {5, 2, 7, 3, 1, 9, 4, 6}},
           // The figure further from 1, as a ratio; overfit below underfit; those without fit last.
           {"FN", {3, 2, 1, 9, 7, 4, 5, 6}},
           {"fN", {7, 1, 9, 2, 3, 4, 5, 6}},
           {"ZN", {3, 1, 9, 7, 2, 4, 5, 6}},
           {"zN", {2, 7, 1, 9, 3, 4, 5, 6}},
           {"TN", {3, 1, 9, 7, 2, 4, 5, 6}},
           {"FA", {3, 2, 1, 9, 7, 5, 4, 6}},
       })
    EXPECT_EQ(bed.Order(letters, false), order) << letters;
  EXPECT_EQ(bed.Order("MN", true), (std::vector<int>{5, 2, 7, 1, 3, 4, 6}));
  Bed empty;
  for (const ElementIndex element : empty.TheFacet.Elements())
    empty.Elements.ElementStatus[element] = ElementStatus::Unobserved;
  EXPECT_TRUE(empty.Order("N", false).empty());
}

}  // namespace
}  // namespace tessaly
