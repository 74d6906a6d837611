#include "graphs/bin_counts.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace tessaly {

namespace {

constexpr std::size_t kFirstSize = 1024;

/// Spreads neighbouring combinations over the table (the finalizer of SplitMix64; Steele, Lea & Flood 2014).
std::uint64_t Scattered(std::int32_t bin, std::int32_t list) {
  std::uint64_t x =
      static_cast<std::uint64_t>(static_cast<std::uint32_t>(list)) << 32 | static_cast<std::uint32_t>(bin);
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9U;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebU;
  return x ^ (x >> 31);
}

}  // namespace

void BinCounts::Add(std::int32_t bin, std::int32_t list, double score) {
  if (4 * (occupied_ + 1) > 3 * places_.size()) Grow();
  BinCount& place = Place(bin, list);
  if (place.Count == 0) {
    place.Bin = bin;
    place.List = list;
    ++occupied_;
  }
  ++place.Count;
  place.ScoreSum += score;
}

BinCount& BinCounts::Place(std::int32_t bin, std::int32_t list) {
  const std::size_t mask = places_.size() - 1;
  for (std::size_t at = static_cast<std::size_t>(Scattered(bin, list)) & mask;; at = (at + 1) & mask) {
    BinCount& place = places_[at];
    if (place.Count == 0 || (place.Bin == bin && place.List == list)) return place;
  }
}

void BinCounts::Grow() {
  const std::vector<BinCount> old =
      std::exchange(places_, std::vector<BinCount>(std::max(2 * places_.size(), kFirstSize)));
  for (const BinCount& place : old)
    if (place.Count > 0) Place(place.Bin, place.List) = place;
}

std::vector<BinCount> BinCounts::Sorted() && {
  std::erase_if(places_, [](const BinCount& place) { return place.Count == 0; });
  places_.shrink_to_fit();
  occupied_ = 0;
  SortByList(places_);
  return std::exchange(places_, {});
}

void SortByList(std::vector<BinCount>& counts) {
  std::sort(counts.begin(), counts.end(),
            [](const BinCount& a, const BinCount& b) { return std::tie(a.List, a.Bin) < std::tie(b.List, b.Bin); });
}

BinLists::BinLists(std::vector<BinCount> counts, std::int32_t lists)
    : counts_(std::move(counts)), starts_(static_cast<std::size_t>(lists) + 1) {
  for (const BinCount& row : counts_) ++starts_[static_cast<std::size_t>(row.List) + 1];
  for (std::size_t list = 1; list < starts_.size(); ++list) starts_[list] += starts_[list - 1];
}

std::span<const BinCount> BinLists::List(std::int32_t list) const {
  const auto at = static_cast<std::size_t>(list);
  if (list < 0 || at + 1 >= starts_.size()) return {};
  return std::span(counts_).subspan(starts_[at], starts_[at + 1] - starts_[at]);
}

std::int32_t BinLists::Longest() const {
  std::size_t longest = 0;
  for (std::size_t list = 1; list < starts_.size(); ++list)
    longest = std::max(longest, starts_[list] - starts_[list - 1]);
  return static_cast<std::int32_t>(longest);
}

}  // namespace tessaly
