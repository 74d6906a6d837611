#include "estimate/fit_block.h"

#include <algorithm>
#include <cmath>

#include "estimate/fair_score.h"

namespace tessaly {

FitEvaluator::FitEvaluator(const Analysis& analysis, float hardwareExponent, FacetMeans means)
    : analysis_(analysis),
      kernel_(analysis.Scales, hardwareExponent),
      evaluator_(analysis.Scales, hardwareExponent, 0),
      view_(analysis, means),
      probabilities_(kProbabilityTop + 1),
      fair_(analysis.Scales) {}

void FitEvaluator::Evaluate(FitBlock& block) {
  if (block.Evaluated) return;
  block.Evaluated = true;
  EvaluateScores(block);
  for (std::size_t at = 0; at < block.Observations.Size; ++at) {
    if (!TakesPart(block.Observations.Status[at])) continue;
    const Observation& obs = view_.Show(block.Observations, at);
    block.Rows[at] = RowOf(obs, ScoresOf(block, at));
    PutFairScores(block, at, obs);
  }
  EvaluateFairScores(block);
}

void FitEvaluator::EvaluateScores(FitBlock& block) {
  const ObservationBlock& observations = block.Observations;
  block.Scores.Clear();
  for (std::size_t at = 0; at < observations.Size; ++at) {
    const CellFacts& cell = observations.CellOf(at);
    if (!TakesPart(observations.Status[at]) || !cell.SideBySide()) continue;
    block.Place[at] = static_cast<std::uint16_t>(block.Scores.Size());
    block.Scores.Put(cell.Scale, cell.Top, observations.Measure[at]);
  }
  evaluator_.Evaluate(block.Scores);
}

FitEvaluator::Scores FitEvaluator::ScoresOf(const FitBlock& block, std::size_t at) {
  const CellFacts& cell = block.Observations.CellOf(at);
  if (!cell.SideBySide()) {
    const float measure = block.Observations.Measure[at];
    const float expected = kernel_.CategoryProbabilities(cell.Scale, cell.Type, cell.Top, measure);
    return {expected, kernel_.Table()};
  }
  const std::size_t place = block.Place[at];
  for (std::int32_t k = 0; k <= cell.Top; ++k)
    probabilities_[static_cast<std::size_t>(k)] = block.Scores.Probability(place, k);
  return {block.Scores.Expected(place), {probabilities_.data(), cell.Top}};
}

FitBlock::Row FitEvaluator::RowOf(const Observation& obs, const Scores& scores) const {
  FitBlock::Row row;
  row.Fit = FitOf(obs, scores.Expected, scores.Probabilities, analysis_.Scales);
  row.Odds = kernel_.LogOddsMoments(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, obs.MeasureSum, obs.ObsOrdinal,
                                    scores.Probabilities);
  if (obs.Status == ReadStatus::Usable) {
    const float p = std::max(scores.Probabilities[obs.ObsOrdinal], analysis_.Settings.SmallestNumber);
    row.LogProbability = std::log(static_cast<double>(p));
  }
  return row;
}

void FitEvaluator::PutFairScores(FitBlock& block, std::size_t at, const Observation& obs) {
  for (std::size_t position = 0; position < obs.Elements.size(); ++position) {
    const ObservedElement& own = obs.Elements[position];
    if (!own.Collects(obs.Status)) continue;
    const float measure = obs.MeanOffsetSum + own.CurrentMeasure;
    if (!block.Observations.CellOf(at).SideBySide()) {
      block.FairRow(at)[position] =
          FairScore(obs.CurrentScale, obs.CurrentType, measure, own.Negative, analysis_.Scales, kernel_);
      continue;
    }
    waiting_[fair_.Size()] = {at, position, own.Negative};
    fair_.Put(obs.CurrentScale, obs.CurrentTop, measure);
    if (fair_.Full()) EvaluateFairScores(block);
  }
}

void FitEvaluator::EvaluateFairScores(FitBlock& block) {
  evaluator_.Evaluate(fair_);
  for (std::size_t place = 0; place < fair_.Size(); ++place) {
    const Waiting& own = waiting_[place];
    const CellFacts& cell = block.Observations.CellOf(own.Observation);
    block.FairRow(own.Observation)[own.Position] =
        FairScoreOf(cell.Scale, cell.Type, fair_.Expected(place), own.Negative, analysis_.Scales,
                    [&](std::int32_t k) { return k <= cell.Top ? fair_.Probability(place, k) : 0.0F; });
  }
  fair_.Clear();
}

}  // namespace tessaly
