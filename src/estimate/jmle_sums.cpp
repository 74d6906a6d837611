#include "estimate/jmle_sums.h"

#include <algorithm>
#include <utility>

#include "data/block_pipeline.h"
#include "model/response_moments.h"

namespace tessaly {

namespace {

/// How far ahead of its use the record of an element is sent for.
constexpr std::size_t kAhead = 32;

}  // namespace

JmleSums::JmleSums(float probe, ResponseKernel& kernel, Table<ElementIndex, EstimationSums>& sums, ScaleTables& scales)
    : probe_(probe), kernel_(kernel), sums_(sums), scales_(scales), carried_(sums) {}

ScoreEvaluator JmleSums::MakeEvaluator() const {
  return {scales_, kernel_.HardwareExponent(), probe_};
}

void JmleSums::Evaluate(JmleBlock& block, ScoreEvaluator& evaluator) {
  if (block.Evaluated) return;
  block.Evaluated = true;
  const ObservationBlock& observations = block.Observations;
  block.Scores.Clear();
  for (std::size_t at = 0; at < observations.Size; ++at) {
    if (!TakesPart(observations.Status[at])) continue;
    const CellFacts& cell = observations.CellOf(at);
    if (cell.SideBySide()) block.Scores.Put(cell.Scale, cell.Top, observations.Measure[at]);
  }
  evaluator.Evaluate(block.Scores);
}

void JmleSums::Add(const JmleBlock& block) {
  const ObservationBlock& observations = block.Observations;
  std::size_t place = 0;
  for (std::size_t at = 0; at < observations.Size; ++at) {
    Prefetch(observations, at + kAhead);
    if (!TakesPart(observations.Status[at])) continue;
    if (observations.CellOf(at).SideBySide()) {
      AddScored(block, at, place++);
    } else {
      AddUnscored(observations, at);
    }
  }
  carried_.Count(observations.Size);
}

void JmleSums::Prefetch(const ObservationBlock& block, std::size_t at) const {
  if (at >= block.Size) return;
  const ElementIndex* const row = block.Row(at);
  for (std::size_t position = 0; position < block.Positions; ++position)
    __builtin_prefetch(&sums_[std::max(row[position], ElementIndex{1})], 1);
}

void JmleSums::AddScored(const JmleBlock& block, std::size_t at, std::size_t place) {
  const ObservationBlock& observations = block.Observations;
  const ScoreBlock& scores = block.Scores;
  const CellFacts& cell = observations.CellOf(at);
  if (cell.Top > 1 && observations.Status[at] == ReadStatus::Usable) {
    double* const expected = scales_.CategoryExpected.Row(cell.Scale);
    for (std::int32_t k = cell.Top; k >= 0; --k)
      expected[k] += static_cast<double>(observations.Weight[at] * scores.Probability(place, k));
  }
  AddToElements(observations, at, {scores.Expected(place), scores.Probed(place), scores.Variance(place)});
}

void JmleSums::AddToElements(const ObservationBlock& block, std::size_t at, const Scores& scores) {
  const CellFacts& cell = block.CellOf(at);
  const ElementIndex* const row = block.Row(at);
  const float weight = block.Weight[at];
  const float information = scores.Variance * weight;
  const auto add = [&](ElementIndex element, float expected, float probed) {
    EstimationSums& sums = sums_[element];
    sums.Information += information;
    sums.ExpectedScore += static_cast<double>(expected * weight);
    sums.ExpectedScoreProbe += static_cast<double>(probed * weight);
  };
  if (block.Status[at] == ReadStatus::Usable && cell.Negatives == nullptr) {
    for (std::size_t position = block.Positions; position-- > 0;)
      if (row[position] != kNoElement) add(row[position], scores.Expected, scores.Probed);
    return;
  }
  for (std::size_t position = block.Positions; position-- > 0;) {
    if (!block.Facts->Collects(row[position], block.Status[at])) continue;
    const bool negative = cell.Negative(position);
    const auto score = [&](float s) { return negative ? static_cast<float>(cell.Top) - s : s; };
    add(row[position], score(scores.Expected), score(scores.Probed));
  }
}

void JmleSums::AddUnscored(const ObservationBlock& block, std::size_t at) {
  const CellFacts& cell = block.CellOf(at);
  const float measure = block.Measure[at];
  const auto [expected, probed] =
      probe_ != 0 ? kernel_.ProbedProbabilities(cell.Scale, cell.Type, cell.Top, measure, probe_)
                  : ProbedScore{kernel_.CategoryProbabilities(cell.Scale, cell.Type, cell.Top, measure), 0};
  const bool discriminates = scales_.CategoryAnchor(cell.Scale, 0) != CategoryAnchor::Anchored;
  if (block.Status[at] == ReadStatus::Usable && discriminates) AddDiscrimination(cell, block.Weight[at]);
  AddToElements(block, at, {expected, probed, EstimationVariance(kernel_, cell.Top, LastInVariance(cell), expected)});
}

void JmleSums::AddDiscrimination(const CellFacts& cell, float weight) {
  const bool poisson = cell.Type == ModelType::Poisson;
  const std::int32_t last = poisson ? kernel_.ComputedTop() : cell.Top;
  double m1 = 0;
  double m2 = 0;
  for (std::int32_t k = poisson ? 2 : 1; k <= last; ++k) {
    const double t = kernel_.DiscriminationStatistic(cell.Type, cell.Top, k);
    const double p = static_cast<double>(kernel_.Probability(k));
    m1 += t * p;
    m2 += t * t * p;
  }
  const double w = static_cast<double>(weight);
  scales_.CategoryExpected(cell.Scale, 0) += m1 * w;
  scales_.CategoryInformation(cell.Scale, 1) += (m2 - m1 * m1) * w;
}

std::int32_t JmleSums::LastInVariance(const CellFacts& cell) const {
  if (cell.Type != ModelType::Poisson) return cell.Top;
  // Poisson counts are summed beyond the highest category that the kernel computes for short scales; those are 0.
  return std::min(cell.Top < 5 ? 20 : 4 * cell.Top, kernel_.ComputedTop());
}

void SumPass(ObservationPass& pass, JmleSums& sums, std::function<void(const ObservationBlock&)> look) {
  ScoreEvaluator reading = sums.MakeEvaluator();
  ScoreEvaluator adding = sums.MakeEvaluator();
  BlockSteps<JmleBlock> steps;
  steps.Make = [&] { return sums.MakeBlock(pass.Positions()); };
  steps.Look = std::move(look);
  steps.Evaluate = [&](JmleBlock& block) { JmleSums::Evaluate(block, reading); };
  steps.Take = [&](JmleBlock& block) {
    JmleSums::Evaluate(block, adding);
    sums.Add(block);
  };
  TakeBlocks(pass, std::move(steps));
  sums.Finish();
}

}  // namespace tessaly
