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

/// e^x, for results that are rounded to single or added to 1: what is below the lowest power makes no difference there.
TESSALY_INLINE void Exponentials(std::size_t count, const double* __restrict x, double* __restrict result) {
  std::array<std::uint64_t, kCapacity> steps;
  for (std::size_t n = 0; n < count; ++n) {
    const exponential::Reduced reduced = exponential::Reduce(x[n] < exponential::kLowest ? exponential::kLowest : x[n]);
    steps[n] = reduced.Steps;
    result[n] = reduced.Series;
  }
  for (std::size_t n = 0; n < count; ++n) result[n] = exponential::Combine({steps[n], result[n]});
}

TESSALY_INLINE void RatingScales(const Group& group) {
  const std::size_t count = group.Count;
  const auto row = [&](std::int32_t k) { return group.Table + static_cast<std::size_t>(k) * kCapacity; };
  std::array<float, kCapacity> sum;
  std::array<float, kCapacity> shift;
  std::array<double, kCapacity> exponent;
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
    exponent[n] = static_cast<double>(shift[n]);
  }
  Exponentials(count, exponent.data(), power.data());
  for (std::size_t n = 0; n < count; ++n) {
    group.Table[n] = static_cast<float>(power[n]);
    total[n] = static_cast<double>(group.Table[n]);
  }
  for (std::int32_t k = group.Top; k >= 1; --k) {
    float* const table = row(k);
    for (std::size_t n = 0; n < count; ++n) exponent[n] = static_cast<double>(shift[n] + table[n]);
    Exponentials(count, exponent.data(), power.data());
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
  std::array<double, kCapacity> exponent;
  std::array<double, kCapacity> odds;
  for (std::size_t n = 0; n < group.Count; ++n) {
    const float d = group.Step[kCapacity + n] - group.Measure[n];
    exponent[n] = static_cast<double>(group.HardwareExponent < d ? group.HardwareExponent : d);
  }
  Exponentials(group.Count, exponent.data(), odds.data());
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

/// All forms give the same bits.
auto* WidestForm() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) return &EvaluateWide;
#endif
  return &EvaluatePlain;
}

std::size_t TableSize(const ScaleTables& scales) {
  std::int32_t top = 1;
  for (const Scale& scale : scales.Scales) top = std::max<std::int32_t>(top, scale.ScaleTopCategory);
  return (static_cast<std::size_t>(top) + 1) * kCapacity;
}

}  // namespace

ScoreBlock::ScoreBlock(const ScaleTables& scales) : table_(TableSize(scales)) {
  PutInOrder();
}

void ScoreBlock::Clear() {
  size_ = 0;
  if (!mixed_) return;
  mixed_ = false;
  PutInOrder();
}

void ScoreBlock::PutInOrder() {
  std::iota(at_.begin(), at_.end(), std::uint16_t{0});
  std::iota(place_.begin(), place_.end(), std::uint16_t{0});
}

void ScoreBlock::Arrange() {
  if (!mixed_) return;
  const auto end = at_.begin() + static_cast<std::ptrdiff_t>(size_);
  std::stable_sort(at_.begin(), end, [&](std::uint16_t a, std::uint16_t b) { return top_[a] < top_[b]; });
  for (std::size_t place = 0; place < size_; ++place) place_[at_[place]] = static_cast<std::uint16_t>(place);
}

ScoreEvaluator::ScoreEvaluator(const ScaleTables& scales, float hardwareExponent, float probe, Registers registers)
    : scales_(scales),
      hardwareExponent_(hardwareExponent),
      probe_(probe),
      registers_(registers),
      step_(TableSize(scales)),
      kept_(step_.size()),
      probedTable_(step_.size()) {
  filled_.fill({-1});
}

void ScoreEvaluator::FillSteps(const ScoreBlock& block, std::size_t first, std::size_t end, std::int32_t top) {
  for (std::size_t place = first; place < end; ++place) {
    const ScaleNumber scale = block.scale_[block.at_[place]];
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

void ScoreEvaluator::Evaluate(ScoreBlock& block) {
  static const auto widest = WidestForm();
  const auto evaluate = registers_ == Registers::Widest ? widest : &EvaluatePlain;
  block.Arrange();
  const std::size_t size = block.size_;
  for (std::size_t place = 0; place < size; ++place) measure_[place] = block.measure_[block.at_[place]];
  for (std::size_t place = 0; place < size; ++place) probedMeasure_[place] = measure_[place] - probe_;
  for (std::size_t first = 0; first < size;) {
    const std::int32_t top = block.top_[block.at_[first]];
    std::size_t end = first;
    while (end < size && block.top_[block.at_[end]] == top) ++end;
    FillSteps(block, first, end, top);
    const Group group{end - first,
                      top,
                      hardwareExponent_,
                      step_.data() + first,
                      kept_.data() + first,
                      measure_.data() + first,
                      block.table_.data() + first,
                      block.expected_.data() + first};
    Group probed = group;
    probed.Measure = probedMeasure_.data() + first;
    probed.Table = probedTable_.data() + first;
    probed.Expected = block.probed_.data() + first;
    evaluate(group, probe_ != 0 ? &probed : nullptr, block.variance_.data() + first);
    first = end;
  }
}

}  // namespace tessaly
