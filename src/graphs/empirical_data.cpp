#include "graphs/empirical_data.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "data/observation_pass.h"
#include "graphs/user_unit.h"

namespace tessaly {

namespace {

constexpr std::int32_t kNotReported = -1;

/// The observed category on the data's numbering.
double ScoreOf(const Observation& obs, const ScaleTables& scales) {
  if (obs.ObsResponse == obs.ObsOrdinal) return obs.ObsResponse;
  return obs.ObsOrdinal + scales.Scales[obs.CurrentScale].ScaleBottomRaw;
}

/// The list of category 0 of each scale in the order of the reports, and the number of lists.
std::vector<std::int32_t> FirstLists(const ScaleTables& scales) {
  std::vector<std::int32_t> firstLists{0};
  for (const ScaleNumber scale : scales.ScaleOrder)
    firstLists.push_back(firstLists.back() + std::max<std::int32_t>(scales.Scales[scale].ScaleTopCategory, 0) + 1);
  return firstLists;
}

/// The sums over the categories of each scale, by scale (from 0) and bin.
std::vector<BinCount> SumsOfScales(std::vector<BinCount> counts, const std::vector<std::int32_t>& firstLists) {
  std::int32_t scale = 0;
  for (BinCount& row : counts) {
    while (row.List >= firstLists[static_cast<std::size_t>(scale) + 1]) ++scale;
    row.List = scale;
  }
  SortByList(counts);
  std::vector<BinCount> sums;
  for (const BinCount& row : counts) {
    if (sums.empty() || sums.back().List != row.List || sums.back().Bin != row.Bin) {
      sums.push_back(row);
    } else {
      sums.back().Count += row.Count;
      sums.back().ScoreSum += row.ScoreSum;
    }
  }
  sums.shrink_to_fit();
  return sums;
}

}  // namespace

EmpiricalData::EmpiricalData(std::vector<BinCount> categories, std::vector<std::int32_t> firstLists,
                             const MeasureBins& bins, float uscale)
    : empiricalScoreStore_(SumsOfScales(categories, firstLists), static_cast<std::int32_t>(firstLists.size()) - 1),
      empiricalCategoryStore_(std::move(categories), firstLists.back()),
      firstLists_(std::move(firstLists)),
      bins_(bins),
      unit_(UserUnit(uscale)),
      firstUnit_(unit_) {
  for (const BinCount& row : empiricalScoreStore_.All()) {
    lowestBin_ = highestBin_ == 0 ? row.Bin : std::min(lowestBin_, row.Bin);
    highestBin_ = std::max(highestBin_, row.Bin);
  }
}

std::span<const BinCount> EmpiricalData::CategoryRows(std::int32_t scale, std::int32_t category) const {
  const auto at = static_cast<std::size_t>(scale);
  if (scale < 1 || at >= firstLists_.size() || category < 0) return {};
  const std::int32_t list = firstLists_[at - 1] + category;
  if (list >= firstLists_[at]) return {};
  return empiricalCategoryStore_.List(list);
}

EmpiricalRange EmpiricalData::Range() const {
  if (highestBin_ == 0) return {};
  EmpiricalRange range{MeasureOf(lowestBin_), MeasureOf(highestBin_)};
  // One user unit of the time when the data were collected.
  if (range.DataMax <= range.DataMin) range.DataMax = range.DataMin + static_cast<float>(unit_ / firstUnit_);
  return range;
}

void EmpiricalData::RescaleEmpirical(float oldUscale, float newUscale) {
  const double from = UserUnit(oldUscale);
  const double to = UserUnit(newUscale);
  unit_ = from == unit_ ? to : unit_ * (to / from);
}

EmpiricalData CollectEmpiricalData(float low, float high, const Analysis& analysis, ObservationStore& store,
                                   RunControl& control, Console& console) {
  const ScaleTables& scales = analysis.Scales;
  const MeasureBins bins(low, high);
  std::vector<std::int32_t> firstLists = FirstLists(scales);
  Table<ScaleNumber, std::int32_t, 0> firstListOf(scales.ScaleCount(), kNotReported);
  for (std::size_t place = 0; place < scales.ScaleOrder.size(); ++place)
    firstListOf[scales.ScaleOrder[place]] = firstLists[place];

  BinCounts counts;
  for (const Observation& obs : ObservationPass(store, analysis, control, console)) {
    if (!TakesPart(obs.Status) || std::isnan(obs.MeasureSum)) continue;
    const std::int32_t firstList = firstListOf[obs.CurrentScale];
    if (firstList == kNotReported || obs.ObsOrdinal < 0 || obs.ObsOrdinal > obs.CurrentTop) continue;
    counts.Add(bins.BinOf(obs.MeasureSum), firstList + obs.ObsOrdinal, ScoreOf(obs, scales));
  }
  return {std::move(counts).Sorted(), std::move(firstLists), bins, analysis.Settings.Uscale};
}

}  // namespace tessaly
