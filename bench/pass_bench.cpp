// Nanoseconds per observation of a joint maximum likelihood pass, beside a plain loop of the same arithmetic over
// arrays in memory: what the store, the index types and the accumulators cost. And of the other passes.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
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

constexpr std::int32_t kTop = RatingDesign::kTop;
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

void JmlePass(benchmark::State& state) {
  Bed bed(state.range(0));
  Table<ElementIndex, EstimationSums> sums(bed.A.Elements.ElementCount());
  TimePass(state, bed, [&](Bed& b) {
    JmleSums pass(kProbe, b.Kernel, sums, b.A.Scales);
    ObservationPass observations(b.Store, b.A, b.Control, b.Silence);
    SumPass(observations, pass, [](const ObservationBlock&) {});
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
class PlainLoop {
 public:
  PlainLoop(const RatingDesign& design, const Analysis& a, std::int64_t count)
      : measure_(a.Elements.ElementMeasure.begin(), a.Elements.ElementMeasure.end()), sums_(measure_.size()) {
    Random random;
    for (std::int64_t n = 0; n < count; ++n) {
      std::array<ElementIndex, 3> elements;
      design.Draw(n, count, random, elements.data());
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
  PlainLoop loop(ThreeFacets(), ThreeFacets().Tables(), state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(loop.Run());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr std::int64_t kMillion = 1000000;
BENCHMARK(JmlePass)->Arg(kMillion)->Arg(10 * kMillion)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(PlainPass)->Arg(kMillion)->Unit(benchmark::kMillisecond);
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
