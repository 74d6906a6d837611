#include "model/score_block.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "support/exponential.h"

namespace tessaly {

namespace {

constexpr std::size_t kCapacity = ScoreBlock::kCapacity;

/// Neighbouring observations of one top. Tables by category, `kCapacity` apart.
struct Group {
  std::size_t Count;
  std::int32_t Top;
  float HardwareExponent;
  const float* Step;
  const float* Kept;
  const float* Measure;
  float* Table;
  float* Expected;
};

// The loops over observations are plain on purpose: a function that is compiled for some kind of processor takes these
// in whole, and its compiler makes of each what that processor does best.
#define TESSALY_INLINE [[gnu::always_inline]] inline

TESSALY_INLINE void Exponentials(std::size_t count, const double* __restrict x, double* __restrict result) {
  std::array<std::uint64_t, kCapacity> steps;
  std::array<double, kCapacity> series;
  for (std::size_t n = 0; n < count; ++n) {
    const exponential::Reduced reduced = exponential::Reduce(x[n] < exponential::kLowest ? exponential::kLowest : x[n]);
    steps[n] = reduced.Steps;
    series[n] = reduced.Series;
  }
  for (std::size_t n = 0; n < count; ++n) {
    const double value = exponential::Combine({steps[n], series[n]});
    result[n] = x[n] < exponential::kLowest ? 0.0 : value;
  }
}

TESSALY_INLINE void RatingScales(const Group& group) {
  const std::size_t count = group.Count;
  const auto row = [&](std::int32_t k) { return group.Table + static_cast<std::size_t>(k) * kCapacity; };
  std::array<float, kCapacity> sum;
  std::array<float, kCapacity> shift;
  std::array<double, kCapacity> power;
  std::array<double, kCapacity> total;
  std::array<double, kCapacity> expected;
  for (std::size_t n = 0; n < count; ++n) sum[n] = shift[n] = 0;
  for (std::int32_t k = 1; k <= group.Top; ++k) {
    const float* const step = group.Step + static_cast<std::size_t>(k) * kCapacity;
    const float* const kept = group.Kept + static_cast<std::size_t>(k) * kCapacity;
    float* const table = row(k);
    for (std::size_t n = 0; n < count; ++n) {
      const float moved = sum[n] + group.Measure[n];
      sum[n] = kept[n] != 0 ? moved : moved - step[n];
      table[n] = kept[n] != 0 ? -std::numeric_limits<float>::infinity() : sum[n];
      shift[n] = shift[n] > table[n] ? shift[n] : table[n];
    }
  }
  for (std::size_t n = 0; n < count; ++n) {
    shift[n] = group.HardwareExponent - shift[n];
    power[n] = static_cast<double>(shift[n]);
  }
  Exponentials(count, power.data(), power.data());
  for (std::size_t n = 0; n < count; ++n) {
    group.Table[n] = static_cast<float>(power[n]);
    total[n] = static_cast<double>(group.Table[n]);
  }
  for (std::int32_t k = group.Top; k >= 1; --k) {
    float* const table = row(k);
    for (std::size_t n = 0; n < count; ++n) power[n] = static_cast<double>(shift[n] + table[n]);
    Exponentials(count, power.data(), power.data());
    for (std::size_t n = 0; n < count; ++n) {
      table[n] = static_cast<float>(power[n]);
      total[n] += static_cast<double>(table[n]);
    }
  }
  for (std::size_t n = 0; n < count; ++n) {
    total[n] = 1.0 / total[n];
    expected[n] = 0;
  }
  double category = group.Top;
  for (std::int32_t k = group.Top; k >= 0; --k, --category) {
    float* const table = row(k);
    for (std::size_t n = 0; n < count; ++n) {
      table[n] = static_cast<float>(total[n] * static_cast<double>(table[n]));
      expected[n] += category * static_cast<double>(table[n]);
    }
  }
  for (std::size_t n = 0; n < count; ++n) group.Expected[n] = static_cast<float>(expected[n]);
}

TESSALY_INLINE void Dichotomies(const Group& group) {
  std::array<double, kCapacity> odds;
  for (std::size_t n = 0; n < group.Count; ++n) {
    const float d = group.Step[kCapacity + n] - group.Measure[n];
    odds[n] = static_cast<double>(group.HardwareExponent < d ? group.HardwareExponent : d);
  }
  Exponentials(group.Count, odds.data(), odds.data());
  for (std::size_t n = 0; n < group.Count; ++n) {
    const auto p = static_cast<float>(1.0 / (odds[n] + 1.0));
    group.Table[kCapacity + n] = p;
    group.Table[n] = 1.0F - p;
    group.Expected[n] = p;
  }
}

TESSALY_INLINE void EvaluateGroup(const Group& group) {
  if (group.Top == 1) {
    Dichotomies(group);
  } else {
    RatingScales(group);
  }
}

TESSALY_INLINE void AddVariances(const Group& group, float* variance) {
  for (std::size_t n = 0; n < group.Count; ++n) variance[n] = 0;
  if (group.Top == 1) {
    for (std::size_t n = 0; n < group.Count; ++n) variance[n] = group.Expected[n];
  }
  for (std::int32_t k = group.Top; k >= 1 && group.Top > 1; --k) {
    const float* const table = group.Table + static_cast<std::size_t>(k) * kCapacity;
    const auto square = static_cast<float>(k * k);
    for (std::size_t n = 0; n < group.Count; ++n) variance[n] += square * table[n];
  }
  for (std::size_t n = 0; n < group.Count; ++n) variance[n] -= group.Expected[n] * group.Expected[n];
}

TESSALY_INLINE void Evaluate(const Group& group, const Group* probed, float* variance) {
  if (probed != nullptr) EvaluateGroup(*probed);
  EvaluateGroup(group);
  AddVariances(group, variance);
}

#undef TESSALY_INLINE

#if defined(__x86_64__)
[[gnu::target("avx2")]] void EvaluateWide(const Group& group, const Group* probed, float* variance) {
  Evaluate(group, probed, variance);
}
#endif

void EvaluatePlain(const Group& group, const Group* probed, float* variance) {
  Evaluate(group, probed, variance);
}

/// The widest form that this processor has. All have the same bits.
auto* ChosenForm() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) return &EvaluateWide;
#endif
  return &EvaluatePlain;
}

}  // namespace

ScoreBlock::ScoreBlock(const ScaleTables& scales, float hardwareExponent, float probe)
    : scales_(scales), hardwareExponent_(hardwareExponent), probe_(probe) {
  std::int32_t top = 1;
  for (const Scale& scale : scales.Scales) top = std::max<std::int32_t>(top, scale.ScaleTopCategory);
  for (std::vector<float>* const table : {&step_, &kept_, &table_, &probedTable_})
    table->resize((static_cast<std::size_t>(top) + 1) * kCapacity);
  filled_.fill({-1});
}

void ScoreBlock::Arrange() {
  const auto end = at_.begin() + static_cast<std::ptrdiff_t>(size_);
  std::iota(at_.begin(), end, std::uint16_t{0});
  const auto byTop = [&](std::uint16_t a, std::uint16_t b) { return top_[a] < top_[b]; };
  if (!std::is_sorted(at_.begin(), end, byTop)) std::stable_sort(at_.begin(), end, byTop);
  for (std::size_t place = 0; place < size_; ++place) {
    place_[at_[place]] = static_cast<std::uint16_t>(place);
    placedMeasure_[place] = measure_[at_[place]];
    probedMeasure_[place] = placedMeasure_[place] - probe_;
  }
}

void ScoreBlock::FillSteps(std::size_t first, std::size_t end, std::int32_t top) {
  for (std::size_t place = first; place < end; ++place) {
    const ScaleNumber scale = scale_[at_[place]];
    if (filled_[place] == scale) continue;
    filled_[place] = scale;
    const float* const step = scales_.CategoryStep.Row(scale);
    const CategoryAnchor* const anchor = scales_.CategoryAnchor.Row(scale);
    for (std::int32_t k = 1; k <= top; ++k) {
      const std::size_t entry = static_cast<std::size_t>(k) * kCapacity + place;
      step_[entry] = step[k];
      kept_[entry] = anchor[k] == CategoryAnchor::KeptUnobserved ? 1.0F : 0.0F;
    }
  }
}

void ScoreBlock::Evaluate() {
  static const auto evaluate = ChosenForm();
  Arrange();
  for (std::size_t first = 0; first < size_;) {
    const std::int32_t top = top_[at_[first]];
    std::size_t end = first;
    while (end < size_ && top_[at_[end]] == top) ++end;
    FillSteps(first, end, top);
    const Group group{end - first,           top,
                      hardwareExponent_,     step_.data() + first,
                      kept_.data() + first,  placedMeasure_.data() + first,
                      table_.data() + first, expected_.data() + first};
    Group probed = group;
    probed.Measure = probedMeasure_.data() + first;
    probed.Table = probedTable_.data() + first;
    probed.Expected = probed_.data() + first;
    evaluate(group, probe_ != 0 ? &probed : nullptr, variance_.data() + first);
    first = end;
  }
}

}  // namespace tessaly
