#include "support/polled_sort.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace tessaly {
namespace {

TEST(PolledSort, SortsAndCanBeLeft) {
  std::vector<std::string> words;
  for (int n = 0; n < 100000; ++n) words.push_back("word " + std::to_string(n * 7919 % 100003));
  int polls = 0;
  PolledSort(words, std::greater<>(), [&] { ++polls; });
  EXPECT_TRUE(std::is_sorted(words.rbegin(), words.rend()));
  EXPECT_GE(polls, 4);
  EXPECT_LT(polls, 40);
  EXPECT_THROW(PolledSort(words, std::less<>(), [] { throw 1; }), int);
}

}  // namespace
}  // namespace tessaly
