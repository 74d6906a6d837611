#include "model/score_block.h"

#include <gtest/gtest.h>

#include <bit>
#include <memory>
#include <random>

#include "model/response_kernel.h"
#include "model/response_moments.h"

namespace tessaly {
namespace {

/// Scales of tops 1 to 9 with random thresholds, some categories kept though unobserved.
ScaleTables RandomScales(std::mt19937& random) {
  constexpr std::int32_t kScales = 12;
  ScaleTables scales;
  std::uniform_real_distribution<float> step(-4, 4);
  scales.CategoryStep.Create(kScales, 10);
  scales.CategoryAnchor.Create(kScales, 10);
  for (std::int32_t s = 0; s < kScales; ++s) {
    Scale scale;
    scale.ScaleTopCategory = static_cast<std::int16_t>(1 + random() % 9);
    scales.Scales.add(scale);
    for (std::int32_t k = 1; k < 10; ++k) {
      scales.CategoryStep({s}, k) = step(random);
      if (random() % 7 == 0 && scale.ScaleTopCategory > 1)
        scales.CategoryAnchor({s}, k) = CategoryAnchor::KeptUnobserved;
    }
  }
  return scales;
}

// The kernel goes one observation at a time, in code of its own.
TEST(ScoreBlock, HasTheBitsOfTheKernelWhateverStandsBeside) {
  std::mt19937 random(8);
  std::uniform_real_distribution<float> near(-3, 3);
  std::uniform_real_distribution<float> far(-400, 400);
  for (int round = 0; round < 200; ++round) {
    const ScaleTables scales = RandomScales(random);
    const float probe = round % 4 == 0 ? 0.0F : std::fabs(near(random));
    const float hardware = round % 3 == 0 ? 3.0F : 80.0F;
    const auto block = std::make_unique<ScoreBlock>(scales);
    ScoreEvaluator evaluator(scales, hardware, probe, round % 2 == 0 ? Registers::Plain : Registers::Widest);
    ResponseKernel kernel(scales, hardware);
    for (int fill = 0; fill < 3; ++fill) {
      const std::size_t count = fill == 0 ? ScoreBlock::kCapacity : random() % ScoreBlock::kCapacity;
      std::vector<std::pair<ScaleNumber, float>> put;
      for (std::size_t at = 0; at < count; ++at) {
        const ScaleNumber scale{round % 5 == 0 ? 0 : static_cast<std::int32_t>(random() % 12)};
        put.emplace_back(scale, random() % 9 == 0 ? far(random) : near(random));
        block->Put(scale, scales.Scales[scale].ScaleTopCategory, put.back().second);
      }
      EXPECT_EQ(block->Full(), count == ScoreBlock::kCapacity);
      evaluator.Evaluate(*block);
      for (std::size_t at = 0; at < count; ++at) {
        const ScaleNumber scale = put[at].first;
        const float measure = put[at].second;
        const std::int32_t top = scales.Scales[scale].ScaleTopCategory;
        const auto expect = [&](float own, float other) {
          ASSERT_EQ(std::bit_cast<std::uint32_t>(own), std::bit_cast<std::uint32_t>(other)) << measure << " " << top;
        };
        if (probe != 0)
          expect(block->Probed(at), kernel.CategoryProbabilities(scale, ModelType::RatingScale, top, measure - probe));
        const float expected = kernel.CategoryProbabilities(scale, ModelType::RatingScale, top, measure);
        expect(block->Expected(at), expected);
        expect(block->Variance(at), EstimationVariance(kernel, top, top, expected));
        for (std::int32_t k = 0; k <= top; ++k) expect(block->Probability(at, k), kernel.Probability(k));
      }
      block->Clear();
    }
  }
}

}  // namespace
}  // namespace tessaly
