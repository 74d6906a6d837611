#include "support/ordered_pipeline.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace tessaly {
namespace {

using Pipeline = OrderedPipeline<int>;

constexpr auto kZero = [] { return 0; };

void Rest() {
  std::this_thread::sleep_for(std::chrono::microseconds(50));
}

TEST(OrderedPipeline, TakesAllInOrderWhoeverIsSlower) {
  for (const bool worthwhile : {false, true}) {
    for (const int restOfFiller : {0, 3, 1000}) {
      for (const int restOfTaker : {0, 3, 1000}) {
        std::vector<int> taken;
        Pipeline pipeline(worthwhile, kZero, [&](int& slot) {
          if (restOfTaker > 0 && slot % restOfTaker == 0) Rest();
          taken.push_back(slot);
        });
        for (int n = 0; n < 500; ++n) {
          if (restOfFiller > 0 && n % restOfFiller == 0) Rest();
          pipeline.Free() = n;
          pipeline.FarAhead();
          pipeline.Submit();
        }
        pipeline.Finish();
        ASSERT_EQ(taken.size(), 500U);
        for (int n = 0; n < 500; ++n) ASSERT_EQ(taken[static_cast<std::size_t>(n)], n);
      }
    }
  }
}

// Whoever fills comes to know of it, at the latest at the end, and nothing more is taken.
TEST(OrderedPipeline, FailuresOfTheTakerReachTheFiller) {
  for (const int last : {3, 40, 1000}) {
    int taken = 0;
    Pipeline pipeline(true, kZero, [&](int& slot) {
      ++taken;
      if (slot == 3) throw std::string("full");
    });
    try {
      for (int n = 0; n <= last; ++n) {
        pipeline.Free() = n;
        pipeline.Submit();
      }
      pipeline.Finish();
      ADD_FAILURE();
    } catch (const std::string& failure) {
      EXPECT_EQ(failure, "full");
    }
    EXPECT_EQ(taken, 4);
  }
}

TEST(OrderedPipeline, CanBeLeftInTheMiddle) {
  for (int round = 0; round < 50; ++round) {
    Pipeline pipeline(true, kZero, [](int&) { Rest(); });
    for (int n = 0; n < round; ++n) {
      pipeline.Free();
      pipeline.Submit();
    }
  }
}

}  // namespace
}  // namespace tessaly
