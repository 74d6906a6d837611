// Sums in single precision over any number of observations.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "support/index.h"

namespace tessaly {

/// A sum in single precision no longer grows when what is added is below its last place: a sum of ones ends at
/// 16,777,216. Long before, many equal additions are all rounded to the same side. So the `Members` of a record are
/// moved into doubles from time to time and begin anew; up to there the sums are what they would be without.
template <class I, class Record, float Record::*... Members>
class CarriedSums {
 public:
  /// Observations after which `Count` carries all records.
  static constexpr std::int64_t kEvery = std::int64_t{1} << 20;

  explicit CarriedSums(Table<I, Record>& sums) : sums_(sums) {}

  /// `observations` more have been added.
  void Count(std::size_t observations) {
    count_ += static_cast<std::int64_t>(observations);
    if (count_ < kEvery) return;
    count_ = 0;
    for (const I index : sums_.all()) Carry(index);
  }

  /// Carries one record.
  void Carry(I index) {
    if (carried_.empty()) carried_.assign(sums_.size(), {});
    Change(index, [](double& carried, float& sum) {
      carried += static_cast<double>(sum);
      sum = 0;
    });
  }

  /// All has been added: the members get their whole sums. Call once.
  void Finish() {
    if (carried_.empty()) return;
    for (const I index : sums_.all())
      Change(index, [](double& carried, float& sum) { sum = static_cast<float>(carried + static_cast<double>(sum)); });
  }

 private:
  template <class Operation>
  void Change(I index, Operation operation) {
    Record& record = sums_[index];
    std::array<double, sizeof...(Members)>& carried = carried_[index];
    std::size_t at = 0;
    (operation(carried[at++], record.*Members), ...);
  }

  Table<I, Record>& sums_;
  std::int64_t count_ = 0;
  Table<I, std::array<double, sizeof...(Members)>> carried_;
};

}  // namespace tessaly
