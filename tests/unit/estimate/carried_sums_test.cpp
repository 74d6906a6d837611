#include "estimate/carried_sums.h"

#include <gtest/gtest.h>

#include "state/elements.h"

namespace tessaly {
namespace {

using Carried = CarriedSums<ElementIndex, EstimationSums, &EstimationSums::Information, &EstimationSums::ProxWeight>;

/// Adds `each` to the information, and twice that to the weight, of element 2 that many times.
EstimationSums Sum(std::int64_t observations, float each) {
  Table<ElementIndex, EstimationSums> sums(3);
  Carried carried(sums);
  for (std::int64_t n = 0; n < observations; ++n) {
    sums[{2}].Information += each;
    sums[{2}].ProxWeight += 2 * each;
    if (n % 256 == 255) carried.Count(256);
  }
  carried.Finish();
  EXPECT_EQ(sums[{1}].Information, 0);
  EXPECT_EQ(sums[{3}].ProxWeight, 0);
  return sums[{2}];
}

TEST(CarriedSums, GrowBeyondTheLastPlaceOfASingle) {
  constexpr std::int64_t kMany = 40'000'000;
  const EstimationSums sums = Sum(kMany, 0.25F);
  EXPECT_EQ(sums.Information, 10'000'000);
  EXPECT_EQ(sums.ProxWeight, 20'000'000);
  // A third of a single, and what is lost in each run up to the next carrying over.
  EXPECT_NEAR(static_cast<double>(Sum(kMany, 1.0F / 3).Information) / kMany, 1.0 / 3, 0.001);
}

TEST(CarriedSums, FewObservationsAreSummedInSingle) {
  constexpr std::int64_t kFew = Carried::kEvery - 1;
  float plain = 0;
  for (std::int64_t n = 0; n < kFew; ++n) plain += 0.1F;
  EXPECT_EQ(Sum(kFew, 0.1F).Information, plain);
}

}  // namespace
}  // namespace tessaly
