// Nanoseconds per call of the response kernel.
#include <benchmark/benchmark.h>

#include "model/response_kernel.h"

namespace {

using namespace tessaly;

void CategoryProbabilities(benchmark::State& state) {
  const auto top = static_cast<std::int32_t>(state.range(0)) - 1;
  ScaleTables scales;
  scales.CategoryStep.Create(1, top + 1);
  scales.CategoryAnchor.Create(1, top + 1);
  for (std::int32_t k = 1; k <= top; ++k)
    scales.CategoryStep({0}, k) = static_cast<float>(k) - 0.5F * static_cast<float>(top + 1);
  ResponseKernel kernel(scales, 80.0F);
  float measure = -3.0F;
  for (auto _ : state) {
    benchmark::DoNotOptimize(kernel.CategoryProbabilities({0}, ModelType::RatingScale, top, measure));
    measure = measure > 3.0F ? -3.0F : measure + 0.01F;
  }
}
BENCHMARK(CategoryProbabilities)->Arg(2)->Arg(5)->Arg(10)->ArgName("categories");

}  // namespace
