#include "estimate/update_facet.h"

#include <gtest/gtest.h>

#include <cmath>

#include "unit/spec/spec_run.h"

namespace tessaly {
namespace {

/// One element before an update: a Newton step of 1 with information 1 makes its change the score residual.
struct Element {
  ElementStatus Status = ElementStatus::Active;
  float Measure = 0;
  float Change = 0;
  float Anchor = 0;
  int Group = 0;
  double Observed = 5;
  double Possible = 10;
  float Count = 5;
};

constexpr ElementStatus kHeld = ElementStatus::Anchored;
constexpr ElementStatus kFree = ElementStatus::Active;

/// A facet of such elements, updated once.
class Updated {
 public:
  Updated(const std::vector<Element>& elements, const std::string& flags, Centering center, bool positive = true,
          Phase phase = Phase::Jmle, bool firstPass = false) {
    const auto count = static_cast<std::int32_t>(elements.size());
    Elements.Create(count);
    sums_.assign(count, {});
    Facet facet;
    facet.FacetFirstElement = {1};
    facet.FacetLastElement = {count};
    facet.FacetElementCount = count;
    facet.FacetFlags = flags + " ";
    facet.FacetCenter = center;
    facet.FacetPositive = positive;
    for (const ElementIndex e : facet.Elements()) {
      const Element& given = elements[static_cast<std::size_t>(e.value - 1)];
      Elements.ElementStatus[e] = given.Status;
      Elements.ElementMeasure[e] = given.Measure;
      Elements.ElementNumber[e] = 10 * e.value;
      Elements.ElementGroup[e] = static_cast<std::int16_t>(given.Group);
      facet.FacetGroupMax = std::max(facet.FacetGroupMax, static_cast<std::int16_t>(std::abs(given.Group)));
      ElementRecord& record = Elements.ElementStats[e];
      record.ObservedScore = given.Observed;
      record.PossibleScore = given.Possible;
      record.ObservedCount = given.Count;
      record.SmallestWeight = 1;
      record.AnchorValue = given.Anchor;
      const double t = double{0.3F};
      const double aim = std::min(std::max(given.Observed, t), given.Possible - t);
      sums_[e].ExpectedScore = aim - double{positive ? given.Change : -given.Change};
      sums_[e].Information = 1;
      if (phase == Phase::Jmle) continue;
      // Met one other element, at 0: then PROX puts an element at the logit of its score.
      sums_[e] = {0, 0, 0, 1};
      record.ObservedScore = given.Possible / (1 + std::exp(-double{given.Measure + given.Change}));
    }
    FacetUpdate update({3}, facet, {phase, 1, 1, 0.5F}, firstPass, settings_, Elements, sums_);
    Moments = update.Run(Summary, largest_, Trace, Said);
  }

  void ExpectMeasures(const std::vector<double>& wanted) const {
    for (std::size_t i = 0; i < wanted.size(); ++i)
      EXPECT_NEAR(double{Elements.ElementMeasure[{static_cast<std::int32_t>(i) + 1}]}, wanted[i], 1e-5)
          << "element " << i + 1;
  }
  ElementStatus StatusOfFirst() const { return Elements.ElementStatus[{1}]; }

  ElementTable Elements;
  IterationSummary Summary;
  UpdateTrace Trace;
  RunningMoments Moments;
  RecordingConsole Said;

 private:
  Settings settings_;
  LargestResiduals largest_;
  Table<ElementIndex, EstimationSums> sums_;
};

TEST(FacetUpdate, StatusesFollowFromScoresAndOnlyOneWay) {
  struct Case {
    std::string_view What;
    Element Before;
    bool Positive, FirstPass;
    ElementStatus After;
    bool Recount;
  };
  using S = ElementStatus;
  const Element active;
  const auto scored = [](S status, double observed, double possible, float count = 5) {
    return Element{status, 1, 0, 0, 0, observed, possible, count};
  };
  for (const Case& c : {
           Case{"zero score", scored(S::Active, 0, 10), true, false, S::Minimum, true},
           Case{"zero score, negative facet", scored(S::Active, 0, 10), false, false, S::Maximum, true},
           Case{"perfect score", scored(S::Active, 10, 10), true, true, S::Maximum, true},
           Case{"perfect score, negative facet", scored(S::Active, 10, 10), false, true, S::Minimum, true},
           Case{"in between", active, true, false, S::Active, false},
           Case{"nothing on the first pass", scored(S::Active, 0, 0, 0), true, true, S::Unobserved, false},
           Case{"nothing left later", scored(S::Active, 0, 0, 0), true, false, S::Unmeasurable, true},
           Case{"counted without possible score", scored(S::Active, 0, 0, 2), true, true, S::Unmeasurable, true},
           Case{"anchored with a zero score", scored(S::Anchored, 0, 10), true, false, S::Anchored, false},
           Case{"anchored without data", scored(S::Anchored, 0, 0, 0), true, true, S::Anchored, false},
           Case{"extreme for good", scored(S::Minimum, 5, 10), true, false, S::Minimum, false},
           Case{"extreme without data", scored(S::Maximum, 0, 0, 0), true, false, S::Unmeasurable, true},
           Case{"unmeasurable for good", scored(S::Unmeasurable, 5, 10), true, false, S::Unmeasurable, false},
           Case{"unobserved for good", scored(S::Unobserved, 5, 10), true, false, S::Unobserved, false},
       }) {
    SCOPED_TRACE(c.What);
    const Updated run({c.Before, {}}, "", Centering::NotCentered, c.Positive, Phase::Jmle, c.FirstPass);
    EXPECT_EQ(run.StatusOfFirst(), c.After);
    EXPECT_EQ(run.Trace.Recount, c.Recount);
    EXPECT_EQ(run.Trace.LastDropped.has_value(), c.Recount);
    if (WithoutMeasure(c.After)) run.ExpectMeasures({0});
  }
}

TEST(FacetUpdate, CentersAnchorsAndGroupsHoldTheFrame) {
  const Element extreme{ElementStatus::Minimum, -3, 0.3F, 0, 0, 0};
  struct Case {
    std::string_view What;
    std::vector<Element> Elements;
    std::string_view Flags;
    Centering Center;
    std::vector<double> Measures;
    int Unconstrained;
  };
  for (const Case& c : {
           Case{"not centered: everybody moves",
                {{kFree, 1, 0.5F}, {kFree, 2, -0.25F}},
                "",
                Centering::NotCentered,
                {1.5, 1.75},
                1},
           Case{"centered: mean 0",
                {{kFree, 1, 0.5F}, {kFree, 2, -0.25F}, {kFree, 0, 0}},
                "",
                Centering::Centered,
                {1.5 - 3.25 / 3, 1.75 - 3.25 / 3, -3.25 / 3},
                0},
           Case{"extremes do not count in the center",
                {{kFree, 1, 0.5F}, {kFree, 2, -0.25F}, extreme},
                "",
                Centering::Centered,
                {-0.125, 0.125, -2.7 - 1.625},
                0},
           Case{"unless asked for",
                {{kFree, 1, 0.5F}, {kFree, 2, -0.25F}, extreme},
                "",
                Centering::CenteredWithExtremes,
                {1.5 - 0.55 / 3, 1.75 - 0.55 / 3, -2.7 - 0.55 / 3},
                0},
           Case{"also those who become extreme now",
                {{kFree, 1, 0.5F}, {kFree, 2, -0.25F}, {kFree, -3, 0.3F, 0, 0, 0}},
                "",
                Centering::CenteredWithExtremes,
                {1.5 - 0.55 / 3, 1.75 - 0.55 / 3, -2.7 - 0.55 / 3},
                0},
           Case{"free elements lose half of what the anchored would do",
                {{kHeld, 2, 0.4F, 2}, {kFree, 1, 0.1F}, {kFree, 0, 0}},
                "A",
                Centering::Centered,
                {2, 0.9, -0.2},
                0},
           Case{"two anchors: half of their mean",
                {{kHeld, 2, 0.4F, 2}, {kHeld, 1, 0.2F, 1}, {kFree, 1, 0.1F}},
                "A",
                Centering::NotCentered,
                {2, 1, 0.95},
                0},
           Case{"an anchor without data holds nothing",
                {{kHeld, 2, 0.4F, 2, 0, 0, 0, 0}, {kFree, 1, 0.1F}},
                "A",
                Centering::NotCentered,
                {2, 1.1},
                1},
           Case{"dummies", {{kHeld, 0, 0.4F}, {kHeld, 0, -0.2F}}, "D", Centering::Centered, {0, 0}, 0},
           // Group 1 is held at the mean 1 of its values, the group of one at its value; outside, half the mean of
           // both.
           Case{"groups keep their mean and a group of one its value",
                {{kHeld, 1, 0.5F, 0.5F, 1}, {kHeld, 1, 0.1F, 1.5F, 1}, {kHeld, 2, 0.4F, 2, 2}, {kFree, 0, 0}},
                "G",
                Centering::Centered,
                {1.2, 0.8, 2, -(0.3 + 0.4) / 4},
                0},
           Case{"a group whose mean had drifted comes back",
                {{kHeld, 1, 0, 3, 1}, {kHeld, 2, 0, 1, 1}},
                "X",
                Centering::Centered,
                {1.5, 2.5},
                0},
           Case{"an extreme member stays in the mean of a G group",
                {{kHeld, 1, 0.5F, 1, 1}, {ElementStatus::Minimum, -2, 0.1F, 1, 1, 0}},
                "G",
                Centering::Centered,
                {2.7, -0.7},
                0},
           Case{"groups of D facets constrain nothing",
                {{kFree, 1, 0.5F, 0, -1}, {kFree, 3, 0, 0, -1}},
                "",
                Centering::Centered,
                {-0.75, 0.75},
                0},
           Case{"a starting value is free in JMLE",
                {{kFree, 1, 0.5F, 1}, {kFree, 3, 0}},
                "",
                Centering::NotCentered,
                {1.5, 3},
                1},
       }) {
    SCOPED_TRACE(c.What);
    const Updated run(c.Elements, std::string(c.Flags), c.Center);
    run.ExpectMeasures(c.Measures);
    EXPECT_EQ(run.Trace.UnconstrainedFacets, c.Unconstrained);
  }
}

TEST(FacetUpdate, APresetElementWaitsForJmleAndStopsCentering) {
  const std::vector<Element> elements{{kFree, 0, 0.5F, 2}, {kFree, 1, 0.5F}, {kFree, 0, 0.5F}};
  Updated centered(elements, "", Centering::Centered, true, Phase::Prox);
  centered.ExpectMeasures({2, 1.5, 0.5});
  EXPECT_EQ(centered.Trace.UnconstrainedFacets, 0);
  Updated floating(elements, "", Centering::NotCentered, true, Phase::Prox);
  EXPECT_EQ(floating.Trace.UnconstrainedFacets, 1);
  // Neither the preset nor an anchored element is offered as a change.
  EXPECT_FLOAT_EQ(floating.Summary.MaxLogitChange, 0.5F);
}

TEST(FacetUpdate, KeepsTheFirstOfEqualChangesAndTheMomentsOfMeasuredElements) {
  const Updated run(
      {{kFree, 0, -0.5F}, {kFree, 0, 0.5F}, {kFree, 1, 0.25F}, {ElementStatus::Maximum, 9, -0.1F, 0, 0, 10}}, "",
      Centering::NotCentered);
  EXPECT_FLOAT_EQ(run.Summary.MaxLogitChange, -0.5F);
  EXPECT_NEAR(run.Summary.MaxScoreResidual, -0.5, 1e-6);
  EXPECT_FLOAT_EQ(run.Summary.MaxResidualFraction, -0.05F);
  EXPECT_EQ(run.Moments.N, 3);
  EXPECT_NEAR(run.Moments.Mean, 1.25 / 3, 1e-6);
}

TEST(FacetUpdate, AnEstimateOutOfRangeIsCutAndToldOnce) {
  const Updated run({{kFree, 79.5F, 0.9F}, {kFree, -79.9F, -0.8F}, {ElementStatus::Maximum, 85, 0.5F, 0, 0, 10}}, "",
                    Centering::NotCentered);
  run.ExpectMeasures({80, -80, 85.5});
  EXPECT_EQ(run.Said.Warnings, std::vector<std::string>{"Warning (1)! Estimate out of range!  Facet 3 Element 10"});
  EXPECT_FALSE(run.Trace.ExtremeSwitch);
}

}  // namespace
}  // namespace tessaly
