// What was observed along the measure: counts and scores of each scale and category in narrow bins.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "data/observation_store.h"
#include "graphs/bin_counts.h"
#include "graphs/measure_bins.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// The lowest and the highest occupied bin, in user units relative to the difficulty.
struct EmpiricalRange {
  float DataMin = 0;
  float DataMax = 1;
};

/// The data behind empirical curves. Scales are numbered from 1 in the order of the reports. A fresh one is what is
/// left without data: a range from 0 to 1. Everything is kept in logits, so that measures are rounded once, whatever
/// user units came and went.
class EmpiricalData {
 public:
  EmpiricalData() = default;
  /// `categories` holds a list for each category of each scale, by list and bin; the lists of scale s are
  /// `firstLists[s - 1]` to `firstLists[s]` - 1.
  EmpiricalData(std::vector<BinCount> categories, std::vector<std::int32_t> firstLists, const MeasureBins& bins,
                float uscale);

  /// Counts of the scale and sums of its scores on the data's numbering, by bin.
  std::span<const BinCount> ScoreRows(std::int32_t scale) const { return empiricalScoreStore_.List(scale - 1); }
  /// Counts of the scale's ordinal `category`, by bin.
  std::span<const BinCount> CategoryRows(std::int32_t scale, std::int32_t category) const;
  /// Bins of the scale that has most.
  std::int32_t LongestScoreList() const { return empiricalScoreStore_.Longest(); }
  /// User units, for a bin of this data.
  float MeasureOf(std::int32_t bin) const { return static_cast<float>(unit_ * bins_.MeasureOf(bin)); }
  EmpiricalRange Range() const;

  /// Takes all measures from one `Uscale=` to another.
  void RescaleEmpirical(float oldUscale, float newUscale);

 private:
  BinLists empiricalScoreStore_;
  BinLists empiricalCategoryStore_;
  std::vector<std::int32_t> firstLists_;
  MeasureBins bins_{0, 1};
  /// User units to a logit: now, and when the data were collected.
  double unit_ = 1;
  double firstUnit_ = 1;
  /// Lowest and highest occupied bin; 0 without data.
  std::int32_t lowestBin_ = 0;
  std::int32_t highestBin_ = 0;
};

/// One pass over the observations: those that take part are counted, each once, whatever its weight. `low` and `high`
/// (logit) are the range of the combined measures of the observations used for estimation. Throws what the pass throws.
EmpiricalData CollectEmpiricalData(float low, float high, const Analysis& analysis, ObservationStore& store,
                                   RunControl& control, Console& console);

}  // namespace tessaly
