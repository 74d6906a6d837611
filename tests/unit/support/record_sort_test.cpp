#include "support/record_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "support/failure.h"

namespace tessaly {
namespace {

namespace fs = std::filesystem;

using Records = std::vector<std::string>;

class RecordSorterTest : public testing::Test {
 protected:
  RecordSorterTest() : folder_(MakeTemporaryName(TemporaryFolder(), "folder", "")) {
    fs::remove(folder_);
    fs::create_directory(folder_);
  }
  ~RecordSorterTest() override { fs::remove_all(folder_); }

  /// Gives the sorted records; the bytes behind the key tell records of equal keys apart.
  Records Sorted(const Records& records, std::size_t recordBytes, std::size_t keyBytes, std::size_t partBytes) {
    RecordSorter sorter(folder_, recordBytes, keyBytes, partBytes);
    for (const std::string& record : records) sorter.Add(record.data());
    EXPECT_EQ(sorter.Count(), static_cast<std::int64_t>(records.size()));
    polls_ = 0;
    sorter.Sort([&] { ++polls_; });
    Records sorted;
    while (const char* const record = sorter.Next()) sorted.emplace_back(record, recordBytes);
    EXPECT_EQ(sorter.Next(), nullptr);
    EXPECT_TRUE(fs::is_empty(folder_));
    return sorted;
  }

  void ExpectStableOrder(const Records& records, std::size_t recordBytes, std::size_t keyBytes) {
    Records expected = records;
    std::stable_sort(expected.begin(), expected.end(), [=](const std::string& a, const std::string& b) {
      return a.compare(0, keyBytes, b, 0, keyBytes) < 0;
    });
    // One record a part and two ways, several parts and two ways, more parts than ways, one merge, all in one part.
    for (const std::size_t partBytes : {1u, 1000u, 17000u, 60000u, 10000000u})
      EXPECT_EQ(Sorted(records, recordBytes, keyBytes, partBytes), expected) << keyBytes << ' ' << partBytes;
  }

  const std::string folder_;
  int polls_ = 0;
};

/// `count` records with keys of random bytes below `byteValues` and with their number behind the key.
Records RandomRecords(std::size_t count, std::size_t keyBytes, unsigned byteValues) {
  std::mt19937 random(static_cast<unsigned>(keyBytes));
  Records records(count);
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t k = 0; k < keyBytes; ++k) records[i] += static_cast<char>(random() % byteValues);
    for (int shift = 0; shift < 24; shift += 8) records[i] += static_cast<char>(i >> shift);
  }
  return records;
}

TEST_F(RecordSorterTest, AsAStableSortWhateverTheParts) {
  for (const std::size_t keyBytes : {0u, 1u, 4u, 8u, 9u, 16u, 21u})
    for (const unsigned byteValues : {2u, 256u})
      ExpectStableOrder(RandomRecords(3001, keyBytes, byteValues), keyBytes + 3, keyBytes);
  ExpectStableOrder(RandomRecords(40, 5000, 256), 5003, 5000);
}

TEST_F(RecordSorterTest, RecordsThatComeInOrder) {
  Records records = RandomRecords(3000, 2, 16);
  std::stable_sort(records.begin(), records.end(),
                   [](const std::string& a, const std::string& b) { return a.compare(0, 2, b, 0, 2) < 0; });
  ExpectStableOrder(records, 5, 2);
  std::swap(records[1500], records[2900]);
  ExpectStableOrder(records, 5, 2);
  std::reverse(records.begin(), records.end());
  ExpectStableOrder(records, 5, 2);
  ExpectStableOrder({}, 5, 2);
  ExpectStableOrder({"abcde"}, 5, 2);
}

TEST_F(RecordSorterTest, LargePartsLetTheUserInWhileTheyAreSorted) {
  const Records records = RandomRecords(600000, 4, 256);
  Records expected = records;
  std::sort(expected.begin(), expected.end());
  Records sorted = Sorted(records, 7, 4, std::size_t{64} << 20);
  EXPECT_GE(polls_, 3);
  for (std::size_t i = 1; i < sorted.size(); ++i) ASSERT_LE(sorted[i - 1].substr(0, 4), sorted[i].substr(0, 4));
  std::sort(sorted.begin(), sorted.end());
  EXPECT_TRUE(sorted == expected);
}

TEST_F(RecordSorterTest, FailuresAndStopsPassThrough) {
  const Records records = RandomRecords(100, 4, 256);
  const auto fill = [&](RecordSorter& sorter) {
    for (const std::string& record : records) sorter.Add(record.data());
  };
  RecordSorter nowhere(folder_ + "/none", 7, 4, 500);
  try {
    fill(nowhere);
    FAIL();
  } catch (const Halt& halt) {
    EXPECT_EQ(halt.Code, FailureCode::WorkFileProblem);
  }
  RecordSorter inMemory(folder_ + "/none", 7, 4);
  fill(inMemory);
  inMemory.Sort([] {});
  EXPECT_NE(inMemory.Next(), nullptr);
  RecordSorter stopped(folder_, 7, 4, 500);
  fill(stopped);
  EXPECT_THROW(stopped.Sort([] { throw Stopped{}; }), Stopped);
}

}  // namespace
}  // namespace tessaly
