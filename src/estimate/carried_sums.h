// Sums in single precision over any number of observations.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/index.h"

namespace tessaly {

/// A sum in single precision no longer grows when what is added is below its last place: a sum of ones ends at
/// 16,777,216. So each time that many observations have passed, the `Members` of all records are moved into doubles and
/// begin anew; up to there the sums are what they would be without. With fewer observations this does nothing.
template <class I, class Record, float Record::*... Members>
class CarriedSums {
 public:
  static constexpr std::int64_t kEvery = std::int64_t{1} << 20;

  explicit CarriedSums(Table<I, Record>& sums) : sums_(sums) {}

  /// `observations` more have been added.
  void Count(std::size_t observations) {
    count_ += static_cast<std::int64_t>(observations);
    if (count_ < kEvery) return;
    count_ = 0;
    carried_.resize(static_cast<std::size_t>(sums_.size()));
    ForAll([](double& carried, float& sum) {
      carried += static_cast<double>(sum);
      sum = 0;
    });
  }

  /// All has been added: the members get their whole sums. Call once.
  void Finish() {
    if (carried_.empty()) return;
    ForAll([](double& carried, float& sum) { sum = static_cast<float>(carried + static_cast<double>(sum)); });
  }

 private:
  template <class Change>
  void ForAll(Change change) {
    auto carried = carried_.begin();
    for (Record& record : sums_) {
      std::size_t at = 0;
      (change((*carried)[at++], record.*Members), ...);
      ++carried;
    }
  }

  Table<I, Record>& sums_;
  std::int64_t count_ = 0;
  std::vector<std::array<double, sizeof...(Members)>> carried_;
};

}  // namespace tessaly
