// Nanoseconds per observation of a joint maximum likelihood pass, beside a plain loop of the same arithmetic over
// arrays in memory: what the store, the index types and the accumulators cost.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "data/observation_pass.h"
#include "data/observation_store.h"
#include "estimate/jmle_sums.h"
#include "model/response_kernel.h"
#include "support/work_file.h"

namespace {

using namespace tessaly;

constexpr std::int32_t kTop = 4;
constexpr std::int32_t kFacets = 3;
constexpr std::array<std::int32_t, kFacets> kElements{10000, 200, 10};
constexpr float kProbe = 0.5F;
constexpr float kShift = 80.0F;

/// A small generator of our own, the same everywhere.
class Random {
 public:
  std::uint32_t Below(std::uint32_t limit) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>(state_ >> 33) % limit;
  }

 private:
  std::uint64_t state_ = 20240229;
};

Analysis ThreeFacets() {
  Analysis a;
  a.Facets = DefaultFacets(kFacets);
  std::int32_t count = 0;
  for (std::int32_t f = 1; f <= kFacets; ++f) {
    Facet& facet = a.Facets[{f}];
    facet.FacetElementCount = kElements[static_cast<std::size_t>(f - 1)];
    facet.FacetFirstElement = {count + 1};
    count += facet.FacetElementCount;
    facet.FacetLastElement = {count};
    a.Fields.Columns.add({});
    a.Fields.Positions.add({FacetNumber{f}, ColumnNumber{f}, true});
  }
  a.Elements.Create(count);
  Random random;
  for (float& measure : a.Elements.ElementMeasure) measure = static_cast<float>(random.Below(4000)) / 1000.0F - 2.0F;
  a.Models.Statements.add({});
  a.Models.Cells.add({});
  Scale scale;
  scale.ScaleTopCategory = kTop;
  a.Scales.Scales.add(scale);
  a.Scales.TopCategory = kTop;
  a.Scales.CategoryStep.Create(1, kTop + 1);
  a.Scales.CategoryAnchor.Create(1, kTop + 1);
  a.Scales.CategoryExpected.Create(1, kTop + 1);
  a.Scales.CategoryInformation.Create(1, kTop + 1);
  a.Scales.CategoryOrdinal.Create(1, kTop + 1);
  for (std::int32_t k = 0; k <= kTop; ++k) {
    a.Scales.CategoryOrdinal({0}, k) = static_cast<std::int16_t>(k);
    if (k > 0) a.Scales.CategoryStep({0}, k) = static_cast<float>(k) - 2.5F;
  }
  return a;
}

std::array<ElementIndex, kFacets> DrawnElements(std::int64_t observation, Random& random) {
  // Data are commonly sorted by the first facet; the others come as they come.
  const auto examinee = static_cast<std::int32_t>(observation / 100 % kElements[0]);
  return {ElementIndex{1 + examinee},
          ElementIndex{1 + kElements[0] +
                       static_cast<std::int32_t>(random.Below(static_cast<std::uint32_t>(kElements[1])))},
          ElementIndex{1 + kElements[0] + kElements[1] +
                       static_cast<std::int32_t>(random.Below(static_cast<std::uint32_t>(kElements[2])))}};
}

void JmlePass(benchmark::State& state) {
  Analysis a = ThreeFacets();
  ObservationWriter writer(TemporaryFolder(), ElementLayout(a.Facets, a.Fields));
  Random random;
  for (std::int64_t n = 0; n < state.range(0); ++n) {
    const auto elements = DrawnElements(n, random);
    writer.Write({{0}, 1.0F, static_cast<std::int16_t>(random.Below(kTop + 1))}, elements.data());
  }
  ObservationStore store = std::move(writer).Seal();
  ResponseKernel kernel(a.Scales, kShift);
  User nobody;
  Console silence;
  RunControl control(nobody);
  Table<ElementIndex, EstimationSums> sums(a.Elements.ElementCount());
  for (auto _ : state) {
    JmleSums pass(kProbe, kernel, sums, a.Scales);
    for (const Observation& obs : ObservationPass(store, a, control, silence)) {
      if (TakesPart(obs.Status)) pass.Add(obs);
    }
    benchmark::DoNotOptimize(sums[{1}].ExpectedScore);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// The same sums from arrays in memory, written down as plainly as can be.
class PlainLoop {
 public:
  explicit PlainLoop(const Analysis& a, std::int64_t count)
      : measure_(a.Elements.ElementMeasure.begin(), a.Elements.ElementMeasure.end()), sums_(measure_.size()) {
    Random random;
    for (std::int64_t n = 0; n < count; ++n) {
      const auto elements = DrawnElements(n, random);
      random.Below(kTop + 1);
      data_.push_back({elements[0].value - 1, elements[1].value - 1, elements[2].value - 1, 1.0F});
    }
    for (std::int32_t k = 1; k <= kTop; ++k) step_[static_cast<std::size_t>(k)] = static_cast<float>(k) - 2.5F;
  }

  double Run() {
    for (const Rating& rating : data_) {
      const float sum = measure_[At(rating.a)] - measure_[At(rating.b)] - measure_[At(rating.c)];
      const float probed = Expected(sum - kProbe);
      const float expected = Expected(sum);
      float squares = 0;
      for (std::size_t k = kTop; k >= 1; --k) squares += static_cast<float>(k * k) * p_[k];
      for (std::size_t k = 0; k <= kTop; ++k) category_[k] += static_cast<double>(rating.w * p_[k]);
      const float information = (squares - expected * expected) * rating.w;
      for (const std::int32_t element : {rating.c, rating.b, rating.a}) {
        Sums& sums = sums_[At(element)];
        sums.information += information;
        sums.expected += static_cast<double>(expected * rating.w);
        sums.probed += static_cast<double>(probed * rating.w);
      }
    }
    return sums_[0].expected;
  }

 private:
  struct Rating {
    std::int32_t a, b, c;
    float w;
  };
  struct Sums {
    double expected, probed;
    float information;
  };

  static std::size_t At(std::int32_t element) { return static_cast<std::size_t>(element); }

  float Expected(float measure) {
    float sum = 0;
    float highest = 0;
    for (std::size_t k = 1; k <= kTop; ++k) {
      sum = sum + measure - step_[k];
      p_[k] = sum;
      highest = std::max(highest, sum);
    }
    const float shift = kShift - highest;
    p_[0] = static_cast<float>(std::exp(static_cast<double>(shift)));
    double total = static_cast<double>(p_[0]);
    for (std::size_t k = kTop; k >= 1; --k) {
      p_[k] = static_cast<float>(std::exp(static_cast<double>(shift + p_[k])));
      total += static_cast<double>(p_[k]);
    }
    const double r = 1.0 / total;
    double expected = 0;
    for (std::size_t k = 0; k <= kTop; ++k) {
      p_[k] = static_cast<float>(r * static_cast<double>(p_[k]));
      expected += static_cast<double>(k) * static_cast<double>(p_[k]);
    }
    return static_cast<float>(expected);
  }

  std::vector<float> measure_;
  std::vector<Sums> sums_;
  std::vector<Rating> data_;
  std::array<float, kTop + 1> step_{};
  std::array<float, kTop + 1> p_{};
  std::array<double, kTop + 1> category_{};
};

void PlainPass(benchmark::State& state) {
  PlainLoop loop(ThreeFacets(), state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(loop.Run());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr std::int64_t kMillion = 1000000;
BENCHMARK(JmlePass)->Arg(kMillion)->Arg(10 * kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(PlainPass)->Arg(kMillion)->Unit(benchmark::kMillisecond);

}  // namespace
