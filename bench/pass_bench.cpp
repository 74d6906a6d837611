// Nanoseconds per observation of a joint maximum likelihood pass, beside a plain loop of the same arithmetic over
// arrays in memory: what the store, the index types and the accumulators cost. And of the other passes.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "data/observation_pass.h"
#include "data/observation_store.h"
#include "estimate/fit_pass.h"
#include "estimate/jmle_sums.h"
#include "estimate/point_biserial.h"
#include "estimate/subset_connection.h"
#include "interaction/bias_estimation.h"
#include "interaction/bias_fit.h"
#include "interaction/inter_rater_agreement.h"
#include "model/response_kernel.h"
#include "rating_design.h"

namespace {

using namespace tessaly;

constexpr float kProbe = 0.5F;
constexpr float kShift = 80.0F;

RatingDesign ThreeFacets() {
  return {{10000, 200, 10}};
}

/// What a pass needs.
struct Bed {
  explicit Bed(std::int64_t observations, const RatingDesign& design = ThreeFacets())
      : A(design.Tables()), Store(design.Observations(A, observations)) {}

  Analysis A;
  ObservationStore Store;
  ResponseKernel Kernel{A.Scales, kShift};
  User Nobody;
  Console Silence;
  RunControl Control{Nobody};
};

/// Times `pass`, which takes the bed and gives a result.
template <class Pass>
void TimePass(benchmark::State& state, Bed& bed, Pass pass) {
  for (auto _ : state) benchmark::DoNotOptimize(pass(bed));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void JmlePass(benchmark::State& state, const RatingDesign& design) {
  Bed bed(state.range(0), design);
  Table<ElementIndex, EstimationSums> sums(bed.A.Elements.ElementCount());
  TimePass(state, bed, [&](Bed& b) {
    JmleSums pass(kProbe, b.Kernel, sums, b.A.Scales);
    ObservationPass observations(b.Store, b.A, b.Control, b.Silence);
    SumPass(observations, pass);
    return sums[{1}].ExpectedScore;
  });
}

void FitStatistics(benchmark::State& state) {
  Bed bed(state.range(0));
  TimePass(state, bed, [](Bed& b) {
    FitPass fit(b.A, b.Store, b.Kernel, b.Control, b.Silence);
    fit.Run();
    fit.Finish();
    return b.A.Elements.Fit[{1}].InfitMeanSquare;
  });
}

void PointBiserialCorrelations(benchmark::State& state) {
  Bed bed(state.range(0));
  bed.A.Settings.PtBiserial = 'Y';
  TimePass(state, bed, [](Bed& b) {
    PointBiserial correlations(b.A, b.Store, b.Control, b.Silence);
    correlations.CountsForCorrelation();
    correlations.Correlate();
    return b.A.Elements.Fit[{1}].Correlation;
  });
}

void RaterAgreement(benchmark::State& state) {
  Bed bed(state.range(0));
  bed.A.Settings.InterRaterFacets = {2};
  TimePass(state, bed,
           [](Bed& b) { return InterRaterAgreement(b.A, b.Store, b.Kernel, b.Control, b.Silence).ExactAgreements; });
}

/// 5,000 examinees by 20 raters: 100,000 terms, of 10 ratings each in a million.
RatingDesign ManyTerms() {
  return {{5000, 20, 10}};
}

/// Finding the terms, their iterations and their fit, per pass over the data.
void BiasPasses(benchmark::State& state) {
  Bed bed(state.range(0), ManyTerms());
  double passes = 0;
  double terms = 0;
  for (auto _ : state) {
    BiasTerms result({{1}, {2}}, bed.A.Facets);
    ObservationTerms finder(result, bed.A.Fields);
    IterationListener nobody;
    BiasEstimation(result, finder, bed.A, bed.Store, bed.Kernel, bed.Control, bed.Silence, nobody).Run();
    FitBiasTerms(finder, bed.A, bed.Store, bed.Kernel, bed.Control, bed.Silence, result);
    // One pass finds the terms, one fits them.
    passes += bed.Control.Iteration + 2;
    terms = result.Terms.size();
  }
  state.counters["rounds"] = bed.Control.Iteration;
  state.counters["terms"] = terms;
  state.counters["pass"] = benchmark::Counter(passes, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

/// A whole search for subsets: the scan alone, without reading the store, of the passes until nothing changes.
void SubsetSearch(benchmark::State& state, const RatingDesign& design) {
  Analysis a = design.Tables();
  User nobody;
  Console silence;
  RunControl control(nobody);
  std::vector<Observation> observations;
  std::vector<ElementIndex> elements(design.Elements.size());
  Random random;
  for (std::int64_t n = 0; n < state.range(0); ++n) {
    design.Draw(n, state.range(0), random, elements.data());
    Observation& obs = observations.emplace_back();
    for (const ElementIndex element : elements) obs.Elements.push_back({element, 0, ElementStatus::Active, false});
  }
  double passes = 0;
  for (auto _ : state) {
    SubsetConnection subsets(a, control, silence);
    for (passes = 0; subsets.Active(); ++passes) {
      subsets.StartPass();
      for (const Observation& obs : observations) subsets.ScanObservation(obs);
      subsets.EndPass();
    }
  }
  state.counters["passes"] = passes;
  state.counters["subsets"] = a.Subsets.SubsetCount;
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// The same sums from arrays in memory, written down as plainly as can be.
template <std::size_t kFacets, std::size_t kTop>
class PlainLoop {
 public:
  PlainLoop(const RatingDesign& design, const Analysis& a, std::int64_t count)
      : measure_(a.Elements.ElementMeasure.begin(), a.Elements.ElementMeasure.end()), sums_(measure_.size()) {
    Random random;
    const auto firstOfLast = static_cast<std::size_t>(a.Elements.ElementCount() - design.Scales());
    for (std::int64_t n = 0; n < count; ++n) {
      std::array<ElementIndex, kFacets> elements;
      design.Draw(n, count, random, elements.data());
      random.Below(kTop + 1);
      Rating rating;
      for (std::size_t f = 0; f < kFacets; ++f) rating.element[f] = static_cast<std::size_t>(elements[f].value - 1);
      rating.scale = design.ScaleOfItsOwn ? rating.element.back() - firstOfLast : 0;
      data_.push_back(rating);
    }
    for (std::int32_t s = 0; s < design.Scales(); ++s) {
      Scale& scale = scales_.emplace_back();
      for (std::int32_t k = 1; k <= design.Top; ++k) scale.step[static_cast<std::size_t>(k)] = design.Step(s, k);
    }
  }

  double Run() {
    for (const Rating& rating : data_) {
      float sum = measure_[rating.element[0]];
      for (std::size_t f = 1; f < kFacets; ++f) sum -= measure_[rating.element[f]];
      Scale& scale = scales_[rating.scale];
      const float probed = Expected(scale, sum - kProbe);
      const float expected = Expected(scale, sum);
      float squares = 0;
      for (std::size_t k = kTop; k >= 1; --k) squares += static_cast<float>(k * k) * p_[k];
      for (std::size_t k = 0; k <= kTop; ++k) scale.category[k] += static_cast<double>(rating.w * p_[k]);
      const float information = (squares - expected * expected) * rating.w;
      for (std::size_t f = kFacets; f-- > 0;) {
        Sums& sums = sums_[rating.element[f]];
        sums.information += information;
        sums.expected += static_cast<double>(expected * rating.w);
        sums.probed += static_cast<double>(probed * rating.w);
      }
    }
    return sums_[0].expected;
  }

 private:
  struct Rating {
    std::array<std::size_t, kFacets> element;
    std::size_t scale;
    float w = 1;
  };
  struct Sums {
    double expected, probed;
    float information;
  };
  struct Scale {
    std::array<float, kTop + 1> step{};
    std::array<double, kTop + 1> category{};
  };

  float Expected(const Scale& scale, float measure) {
    float sum = 0;
    float highest = 0;
    for (std::size_t k = 1; k <= kTop; ++k) {
      sum = sum + measure - scale.step[k];
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
  std::vector<Scale> scales_;
  std::array<float, kTop + 1> p_{};
};

template <std::size_t kFacets, std::size_t kTop>
void PlainPass(benchmark::State& state, const RatingDesign& design) {
  PlainLoop<kFacets, kTop> loop(design, design.Tables(), state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(loop.Run());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr std::int64_t kMillion = 1000000;
/// A pass and the plain loop, one after the other.
template <std::size_t kFacets, std::size_t kTop>
void Compare(const std::string& name, const RatingDesign& design) {
  benchmark::RegisterBenchmark(("JmlePass/" + name).c_str(), [design](benchmark::State& s) { JmlePass(s, design); })
      ->Arg(kMillion)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
  benchmark::RegisterBenchmark(("PlainPass/" + name).c_str(),
                               [design](benchmark::State& s) { PlainPass<kFacets, kTop>(s, design); })
      ->Arg(kMillion)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
}

const bool kCompared = [] {
  Compare<3, 1>("Dichotomous", {{10000, 200, 10}, true, 1});
  Compare<3, 4>("FiveCategories", ThreeFacets());
  Compare<3, 9>("TenCategories", {{10000, 200, 10}, true, 9});
  Compare<3, 4>("ScaleForEachTask", {{10000, 200, 10}, true, 4, true});
  Compare<6, 4>("SixFacets", {{10000, 50, 10, 5, 4, 3}});
  Compare<3, 4>("ManyElements", {{500000, 200, 10}});
  Compare<3, 4>("ManyElementsInAnyOrder", {{500000, 200, 10}, false});
  return true;
}();

BENCHMARK(FitStatistics)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(PointBiserialCorrelations)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(RaterAgreement)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(BiasPasses)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SubsetSearch, ThreeFacets, ThreeFacets())->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SubsetSearch, ThreeFacetsInAnyOrder, RatingDesign{{10000, 200, 10}, false})
    ->Arg(kMillion)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SubsetSearch, SixFacetsInAnyOrder, RatingDesign{{10000, 50, 10, 5, 4, 3}, false})
    ->Arg(kMillion)
    ->Unit(benchmark::kMillisecond);

}  // namespace
