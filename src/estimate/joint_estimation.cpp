#include "estimate/joint_estimation.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "data/observation_pass.h"
#include "estimate/constraint_conflicts.h"
#include "estimate/jmle_sums.h"
#include "estimate/prepare_scales.h"
#include "estimate/priorities.h"
#include "estimate/prox_sums.h"
#include "estimate/renumber_scale.h"
#include "estimate/update_scales.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// A largest PROX change below this says that the starting values are good enough.
constexpr float kProxSettled = 0.9F;
constexpr float kSmallestProbe = 0.1F;
/// Changes below this end the iterations whatever the criteria are.
constexpr float kNoChange = 0.000001F;
/// Up to this iteration the element criteria bind the category statistics too.
constexpr std::int32_t kFirstIterations = 20;
/// Estimation of scales rests in the third step of a sequence of priorities.
constexpr std::int32_t kPriorityWithoutScales = 2;

constexpr std::int32_t kDampingFrom = 11;
constexpr float kDampingBack = 0.75F;
constexpr float kDampingOn = 1.01F;
/// Logit. Below it slow progress is no reason for longer steps: estimates at rest would be driven apart for ever.
constexpr float kLeastLengthened = 0.0001F;
constexpr float kLeastDamping = 0.001F;
constexpr float kMostDamping = 2.0F;

template <class T>
int Sign(T x) {
  return x > 0 ? 1 : x < 0 ? -1 : 0;
}

std::string Described(const DroppedElement& dropped, const ElementTable& elements) {
  return "facet" + GeneralText(dropped.Facet.value) + " element" +
         GeneralText(elements.ElementNumber[dropped.Element]) + " \"" + elements.ElementLabel[dropped.Element] + "\"";
}

}  // namespace

JointEstimation::JointEstimation(Analysis& analysis, ObservationStore& store, ResponseKernel& kernel,
                                 RunControl& control, Console& console, IterationListener& listener)
    : analysis_(analysis),
      store_(store),
      kernel_(kernel),
      control_(control),
      console_(console),
      listener_(listener),
      subsets_(analysis, control, console) {}

void JointEstimation::Run() {
  control_.Iteration = 0;
  control_.Phase = Phase::Recount;
  control_.CurveDamping = 1;
  control_.NewtonStep = analysis_.Settings.NewtonStep;
  control_.IterationKeysOn = true;
  listener_.EstimationStarted();
  PrepareScales(analysis_.Models, analysis_.Settings, analysis_.Scales);
  RenumberScales(analysis_.Models, kernel_, analysis_.Scales);
  sums_.assign(analysis_.Elements.ElementCount(), {});
  Priorities priorities(analysis_.Facets);
  while (const auto priority = priorities.Next()) {
    if (priorities.PriorityChanges() > 0) listener_.PriorityStarted(*priority);
    RunPriority(*priority, priorities.PriorityChanges());
  }
  control_.IterationKeysOn = false;
  control_.Phase = Phase::Reports;
  listener_.EstimationEnded();
}

void JointEstimation::RunPriority(std::int32_t priority, std::int32_t priorityChanges) {
  control_.FastForward = false;
  do {
    Iterate(priority, priorityChanges);
  } while (GoOn() && !control_.FastForward);
  control_.FastForward = false;
}

void JointEstimation::Iterate(std::int32_t priority, std::int32_t priorityChanges) {
  ClearSums();
  newtonStepNow_ = control_.NewtonStep;
  AdvanceStage();
  ++control_.Iteration;
  previousActiveChange_ = summary_.MaxActiveChange;
  previousScoreResidual_ = summary_.MaxScoreResidual;
  summary_ = {};
  summary_.Iteration = control_.Iteration;
  summary_.Phase = control_.Phase;
  listener_.IterationStarted(control_.Iteration);
  subsets_.StartPass();
  ClearCategories();
  if (control_.Phase < Phase::Jmle) {
    RecountOrProxPass();
  } else {
    JmlePass();
  }
  if (firstPass_) KeepFirstTotals();
  if (recount_) recount_ = RenumberScales(analysis_.Models, kernel_, analysis_.Scales);

  largest_ = {};
  if (priorityChanges != kPriorityWithoutScales)
    UpdateScales(analysis_.Models, {control_.Phase, control_.CurveDamping, analysis_.Settings.SmallestNumber},
                 analysis_.Scales, summary_, largest_);
  listener_.StepsUpdated(largest_);
  largest_ = {};
  UpdateFacets(priority);
  AdaptDamping();
  summary_.Recount = recount_;
  listener_.Iterated(summary_, largest_);
  if (!dataSeen_) NothingLeft();
  subsets_.EndPass();
  firstPass_ = false;
  curveProbe_ = std::max(std::fabs(summary_.MaxLogitChange), kSmallestProbe);
}

void JointEstimation::ClearSums() {
  if (recount_) {
    for (ElementRecord& record : analysis_.Elements.ElementStats) {
      record.ObservedScore = 0;
      record.ObservedCount = 0;
      record.SmallestWeight = 0;
      record.RawScore = 0;
      record.PossibleScore = 0;
    }
  }
  for (EstimationSums& sums : sums_) sums = {};
}

void JointEstimation::AdvanceStage() {
  if (recount_) {
    control_.Phase = Phase::Recount;
    dataSeen_ = false;
    return;
  }
  if (control_.Phase == Phase::Jmle) {
    CheckConstraints();
    return;
  }
  if (control_.Phase == Phase::Recount) {
    if (trace_.UnconstrainedFacets == 0) trace_.ExtremeSwitch = true;
    control_.Phase = Phase::Prox;
  }
  if (!ProxIsDone()) return;
  trace_.ExtremeSwitch = false;
  control_.Phase = Phase::Jmle;
}

bool JointEstimation::ProxIsDone() const {
  return trace_.ExtremeSwitch || std::fabs(summary_.MaxLogitChange) < kProxSettled || control_.Iteration > 1;
}

void JointEstimation::CheckConstraints() {
  if (constraintsChecked_) return;
  constraintsChecked_ = true;
  for (const std::string& conflict : ConstraintConflicts(analysis_)) console_.ShowWarning(conflict);
  std::string& warning = analysis_.ConstraintWarning;
  if (trace_.UnconstrainedFacets == 1) return;
  warning = trace_.UnconstrainedFacets == 0 ? "Warning (7)! Over-constrained?  Noncenter= not in effect"
                                            : "Warning (8)! Under-constrained?  Noncenter= for two or more facets";
  if (analysis_.Settings.BeepOn) console_.Beep();
  console_.ShowWarning(warning);
}

void JointEstimation::ClearCategories() {
  ScaleTables& scales = analysis_.Scales;
  for (const ScaleNumber scale : scales.Scales.all()) {
    for (std::int32_t k = 0; k <= scales.TopCategory; ++k) {
      scales.CategoryExpected(scale, k) = 0;
      if (!recount_) continue;
      scales.CategoryCount(scale, k) = 0;
      scales.CategoryInformation(scale, k) = 0;
    }
    // The variance of a discrimination belongs to one pass; carried on it would shorten every later step.
    scales.CategoryInformation(scale, 1) = 0;
  }
}

void JointEstimation::RecountOrProxPass() {
  ObservedTotals totals(analysis_.Elements, analysis_.Scales);
  ProxSums prox(sums_);
  for (const Observation& obs : ObservationPass(store_, analysis_, control_, console_)) {
    if (!TakesPart(obs.Status)) continue;
    if (subsets_.Active()) subsets_.ScanObservation(obs);
    if (recount_) totals.Add(obs);
    prox.Add(obs);
  }
  if (totals.DataSeen()) dataSeen_ = true;
  if (prox.PoissonSeen()) trace_.ExtremeSwitch = true;
}

void JointEstimation::JmlePass() {
  JmleSums sums(newtonStepNow_ == 0 ? curveProbe_ : 0.0F, kernel_, sums_, analysis_.Scales);
  ObservationPass pass(store_, analysis_, control_, console_);
  ObservationView view(analysis_);
  SumPass(pass, sums, [&](const ObservationBlock& block) { ScanForSubsets(block, view); });
}

void JointEstimation::ScanForSubsets(const ObservationBlock& block, ObservationView& view) {
  for (std::size_t at = 0; at < block.Size && subsets_.Active(); ++at) {
    if (TakesPart(block.Status[at])) subsets_.ScanObservation(view.Show(block, at));
  }
}

void JointEstimation::KeepFirstTotals() {
  for (ElementRecord& record : analysis_.Elements.ElementStats) {
    record.AllCount = record.ObservedCount;
    record.AllScore = record.RawScore;
  }
}

StepRule JointEstimation::Rule() const {
  return {control_.Phase, newtonStepNow_, control_.CurveDamping, curveProbe_};
}

void JointEstimation::UpdateFacets(std::int32_t priority) {
  trace_.UnconstrainedFacets = 0;
  trace_.OutOfRangeTold = !IsTold(control_.Iteration);
  trace_.Recount = false;
  for (const FacetNumber number : analysis_.Facets.all()) {
    const Facet& facet = analysis_.Facets[number];
    if (!facet.HasElements() || facet.FacetPriority != priority) continue;
    FacetUpdate update(number, facet, Rule(), firstPass_, analysis_.Settings, analysis_.Elements, sums_);
    const RunningMoments measures = update.Run(summary_, largest_, trace_, console_);
    if (measures.N > 0) listener_.FacetUpdated(number, measures);
  }
  if (trace_.Recount) recount_ = true;
}

void JointEstimation::AdaptDamping() {
  if (control_.NewtonStep != 0 || control_.Iteration < kDampingFrom) return;
  const double residual = std::fabs(summary_.MaxScoreResidual);
  const double previous = std::fabs(previousScoreResidual_);
  float& damping = control_.CurveDamping;
  if (Sign(summary_.MaxActiveChange) != Sign(previousActiveChange_) ||
      Sign(summary_.MaxScoreResidual) != Sign(previousScoreResidual_) || residual > 2 * previous) {
    damping *= kDampingBack;
  } else if (0.9 * previous < residual &&
             std::fabs(summary_.MaxActiveChange) > kLeastLengthened * std::min(damping, 1.0F)) {
    damping *= kDampingOn;
  }
  damping = std::clamp(damping, kLeastDamping, kMostDamping);
}

void JointEstimation::NothingLeft() const {
  const auto described = [&](const std::optional<DroppedElement>& dropped) {
    return dropped ? Described(*dropped, analysis_.Elements) : std::string();
  };
  if (!trace_.FirstDropped) console_.ShowWarning("No response counts: are all weights 0?");
  throw Halt{FailureCode::AllExtreme, described(trace_.FirstDropped) + " - last: " + described(trace_.LastDropped)};
}

bool JointEstimation::GoOn() {
  if (recount_ || subsets_.Changed() || control_.Phase < Phase::Jmle) return true;
  const bool more = CriteriaAskForMore();
  if (AtRest()) {
    if (more) TellRest();
    return false;
  }
  if (more && control_.Iteration == kManyIterations)
    console_.ShowMessage("Not converged after" + GeneralText(kManyIterations) + " iterations: from here on each" +
                         GeneralText(kManyIterations) +
                         "th is shown. Iterations= limits them, Ctrl+F goes on to the report");
  const std::int32_t asked = analysis_.Settings.IterationsLimit;
  // Small analyses come as far as a count goes, in some days.
  const std::int32_t limit = asked > 0 ? asked : std::numeric_limits<std::int32_t>::max();
  if (control_.Iteration < limit) return more;
  if (more) listener_.LimitReached(limit);
  return false;
}

bool JointEstimation::AtRest() const {
  return std::fabs(summary_.MaxLogitChange) < kNoChange && std::fabs(summary_.MaxCategoryChange) < kNoChange;
}

void JointEstimation::TellRest() const {
  const Settings& s = analysis_.Settings;
  const double score = std::fabs(summary_.MaxScoreResidual);
  if (s.ConvergenceScore <= 0 || score <= static_cast<double>(s.ConvergenceScore)) return;
  console_.ShowWarning("At rest, but not converged: a score residual of" + GeneralText(static_cast<float>(score)) +
                       " remains, above Convergence=. Do anchors, Center= or Noncenter= hold too much?");
}

bool JointEstimation::WithinFirstIterations() const {
  return control_.Iteration < kFirstIterations;
}

bool JointEstimation::CriteriaAskForMore() const {
  const Settings& s = analysis_.Settings;
  const float logit = std::fabs(summary_.MaxLogitChange);
  const float step = std::fabs(summary_.MaxCategoryChange);
  const double score = std::fabs(summary_.MaxScoreResidual);
  const double category = std::fabs(summary_.MaxCategoryResidual);
  const auto above = [](auto value, float criterion) {
    return criterion > 0 && static_cast<double>(value) > static_cast<double>(criterion);
  };
  const bool anyCriterion = s.ConvergenceScore > 0 || s.ConvergenceLogit > 0 || s.ConvergenceCategoryScore > 0 ||
                            s.ConvergenceCategoryLogit > 0;
  if (!anyCriterion) return true;
  if (above(logit, s.ConvergenceLogit) || above(score, s.ConvergenceScore)) return true;
  if (above(step, s.ConvergenceCategoryLogit) || above(category, s.ConvergenceCategoryScore)) return true;
  if (!WithinFirstIterations()) return false;
  if (s.ConvergenceCategoryScore == 0 && above(category, s.ConvergenceScore)) return true;
  return s.ConvergenceCategoryLogit == 0 && above(step, s.ConvergenceLogit);
}

}  // namespace tessaly
