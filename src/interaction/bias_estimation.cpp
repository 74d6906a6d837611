#include "interaction/bias_estimation.h"

#include <string>

#include "data/observation_pass.h"
#include "model/response_moments.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// The bias facets together, as a facet of its own.
constexpr FacetNumber kBiasFacet{0};
/// Share of the smallest weight by which an extreme score is moved if `Xtreme=` gives none.
constexpr float kDefaultAdjustment = 0.5F;

/// `criterion`, or what the user asks for if that is stricter.
float Stricter(float criterion, float asked) {
  return asked > 0 && asked < criterion ? asked : criterion;
}

}  // namespace

BiasEstimation::BiasEstimation(BiasTerms& terms, ObservationTerms& finder, const Analysis& analysis,
                               ObservationStore& store, ResponseKernel& kernel, RunControl& control, Console& console,
                               IterationListener& listener)
    : terms_(terms),
      finder_(finder),
      analysis_(analysis),
      store_(store),
      kernel_(kernel),
      control_(control),
      console_(console),
      listener_(listener) {
  const Settings& settings = analysis.Settings;
  rule_.Score = Stricter(rule_.Score, settings.ConvergenceScore);
  rule_.Size = Stricter(rule_.Size, settings.ConvergenceLogit);
  rule_.Limit = settings.HardwareExponent;
  rule_.SmallestNumber = settings.SmallestNumber;
}

bool BiasEstimation::Run() {
  if (!FindTerms()) {
    Tell("No bias terms found");
    return false;
  }
  Tell("There are empirically" + GeneralText(terms_.Terms.size()) + " Bias terms");
  control_.Iteration = 0;
  if (!FirstPass()) {
    Tell("No bias terms estimable");
    return false;
  }
  StartRound();
  FirstSteps();
  EndRound();
  while (summary_.ActiveCells > 0 && !control_.FastForward) {
    StartRound();
    ExpectedScores();
    NextSteps();
    EndRound();
  }
  control_.FastForward = false;
  for (const TermIndex term : terms_.Terms.all()) terms_.Terms[term].BiasSize = work_[term].Size;
  listener_.EstimationEnded();
  return true;
}

void BiasEstimation::Tell(std::string_view text) {
  console_.ShowMessage(text);
  console_.ReportLine(text);
}

bool BiasEstimation::FindTerms() {
  for (const Observation& obs : ObservationPass(store_, analysis_, control_, console_)) finder_.Meet(obs);
  for (const std::int64_t key : finder_.Number()) terms_.BiasKey.add(key);
  const std::int32_t count = terms_.BiasKey.size();
  terms_.Terms.assign(count, {});
  work_.assign(count, {});
  state_.assign(count, {});
  return count > 0;
}

void BiasEstimation::StartRound() {
  ++control_.Iteration;
  summary_ = {};
  summary_.Iteration = control_.Iteration;
  summary_.Phase = Phase::Bias;
  largest_ = {};
  sizes_ = {};
  if (control_.Iteration == 1) listener_.EstimationStarted();
  listener_.IterationStarted(control_.Iteration);
}

bool BiasEstimation::FirstPass() {
  bool seen = false;
  for (const Observation& obs : ObservationPass(store_, analysis_, control_, console_)) {
    if (!(obs.ObsWeight > 0)) continue;
    const TermIndex term = finder_.TermOf(obs);
    if (term.value == 0) continue;
    AddFirst(obs, term);
    seen = true;
  }
  return seen;
}

void BiasEstimation::AddFirst(const Observation& obs, TermIndex index) {
  const float w = obs.ObsWeight;
  BiasTerm& term = terms_.Terms[index];
  TermState& state = state_[index];
  term.CountSum += w;
  term.ObservedSum += w * static_cast<float>(obs.ObsOrdinal);
  term.RawSum += w * static_cast<float>(obs.ObsResponse);
  state.PossibleSum += w * static_cast<float>(obs.CurrentTop);
  if (state.SmallestWeight == 0 || state.SmallestWeight > w) state.SmallestWeight = w;
  const float expected =
      kernel_.CategoryProbabilities(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, obs.MeasureSum);
  work_[index].ExpectedSum += static_cast<double>(w * expected);
  state.VarianceSum += w * EstimationVariance(kernel_, obs.CurrentTop, kernel_.ComputedTop(), expected);
}

void BiasEstimation::FirstSteps() {
  for (const TermIndex term : terms_.Terms.all()) {
    TermState& state = state_[term];
    if (state.PossibleSum == 0 || state.SmallestWeight == 0) continue;
    BiasTerm& result = terms_.Terms[term];
    const double expected = work_[term].ExpectedSum;
    result.ExpectedRawSum = static_cast<float>(expected + static_cast<double>(result.RawSum - result.ObservedSum));
    AdjustExtremeScore(term);
    work_[term].Active = true;
    Take(term,
         FirstBiasStep({result.ObservedSum, state.PossibleSum}, expected, state.VarianceSum, rule_, state.Bracket));
  }
}

void BiasEstimation::AdjustExtremeScore(TermIndex index) {
  BiasTerm& term = terms_.Terms[index];
  const TermState& state = state_[index];
  float adjustment = analysis_.Settings.XtremeBias * state.SmallestWeight;
  if (adjustment == 0) adjustment = kDefaultAdjustment * state.SmallestWeight;
  term.Flag = BiasFlag::Ordinary;
  if (term.ObservedSum == 0) {
    term.Flag = BiasFlag::Minimum;
    term.ObservedSum = adjustment;
  } else if (term.ObservedSum == state.PossibleSum) {
    term.Flag = BiasFlag::Maximum;
    term.ObservedSum -= adjustment;
  }
}

void BiasEstimation::ExpectedScores() {
  for (const Observation& obs : ObservationPass(store_, analysis_, control_, console_)) {
    if (!(obs.ObsWeight > 0)) continue;
    const TermIndex term = finder_.TermOf(obs);
    if (term.value == 0) continue;
    TermWork& work = work_[term];
    if (!work.Active) continue;
    const float expected =
        kernel_.CategoryProbabilities(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, obs.MeasureSum + work.Size);
    work.ExpectedSum += static_cast<double>(obs.ObsWeight * expected);
  }
}

void BiasEstimation::NextSteps() {
  for (const TermIndex term : terms_.Terms.all()) {
    const TermWork& work = work_[term];
    if (!work.Active) continue;
    TermState& state = state_[term];
    Take(term, NextBiasStep({terms_.Terms[term].ObservedSum, state.PossibleSum}, work.ExpectedSum, work.Size, rule_,
                            state.Bracket));
  }
}

void BiasEstimation::Take(TermIndex index, const BiasStep& step) {
  const BiasTerm& term = terms_.Terms[index];
  TermWork& work = work_[index];
  const auto direction = static_cast<float>(analysis_.Settings.BiasDirection);
  ResidualDetail detail;
  detail.What = ResidualDetail::Kind::BiasTerm;
  detail.Term = index;
  detail.Observed = static_cast<double>(term.ObservedSum);
  detail.Expected = work.ExpectedSum;
  detail.Residual = step.Residual;
  detail.Fraction = term.ObservedSum > 0 ? static_cast<float>(step.Residual) / state_[index].PossibleSum : 0.0F;
  detail.Value = direction * step.Size;
  detail.Change = step.Size - work.Size;
  detail.WithScores = true;
  KeepLargest(detail, summary_, largest_);
  sizes_.Add(static_cast<double>(detail.Value));
  work.Size = step.Size;
  work.ExpectedSum = 0;
  work.Active = !step.Settled;
  if (work.Active) ++summary_.ActiveCells;
}

void BiasEstimation::EndRound() {
  listener_.FacetUpdated(kBiasFacet, sizes_);
  listener_.Iterated(summary_, largest_);
}

}  // namespace tessaly
