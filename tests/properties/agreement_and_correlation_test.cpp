// Agreement and correlations against their definitions, taken literally: all pairs, all observations.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "fixture/analysis_fixture.h"
#include "fixture/design.h"

namespace tessaly {
namespace {

/// One observation as the data have it, with what the model says of it at the final estimates.
struct Seen {
  std::vector<int> Elements;
  int Response = 0;
  double Weight = 1;
  /// Probabilities of the categories; the response alone where an element is extreme.
  std::vector<double> Expected;
};

/// Rating scale probabilities in plain double arithmetic.
std::vector<double> Probabilities(double measure, const std::vector<double>& steps) {
  std::vector<double> p = {1};
  double sum = 0;
  for (const double step : steps) p.push_back(std::exp(sum += measure - step));
  double total = 0;
  for (const double term : p) total += term;
  for (double& term : p) term /= total;
  return p;
}

struct Pairs {
  double Opportunities = 0;
  double Exact = 0;
  double Expected = 0;

  void Add(const Seen& a, const Seen& b) {
    const double h = (a.Weight + b.Weight) / 2;
    Opportunities += h;
    if (a.Response == b.Response) Exact += h;
    for (std::size_t k = 0; k < std::min(a.Expected.size(), b.Expected.size()); ++k)
      Expected += h * a.Expected[k] * b.Expected[k];
  }
};

bool SameThing(const Seen& a, const Seen& b, const std::vector<int>& matching) {
  return std::all_of(matching.begin(), matching.end(), [&](int facet) {
    return a.Elements[static_cast<std::size_t>(facet - 1)] == b.Elements[static_cast<std::size_t>(facet - 1)];
  });
}

bool Extreme(ElementStatus status) {
  return status == ElementStatus::Minimum || status == ElementStatus::Maximum;
}

/// The ratings of a finished analysis. The first items are dichotomies, by a model statement of their own.
std::vector<Seen> Ratings(const Design& design, const FinishedAnalysis& run, int dichotomies) {
  std::vector<Seen> all;
  for (const Rating& rating : design.Ratings) {
    Seen seen{rating.Elements, rating.Response, rating.Replication, {}};
    bool extreme = false;
    double measure = 0;
    for (int facet = 1; facet <= 3; ++facet) {
      const int number = rating.Elements[static_cast<std::size_t>(facet - 1)];
      extreme = extreme || Extreme(run.Status(facet, number));
      measure += (facet == 1 ? 1 : -1) * run.Measure(facet, number);
    }
    const bool dichotomy = rating.Elements[2] <= dichotomies;
    const std::vector<double> steps = dichotomy ? std::vector<double>{0} : run.Steps(ScaleNumber{1});
    seen.Expected = extreme ? std::vector<double>(steps.size() + 1, 0.0) : Probabilities(measure, steps);
    if (extreme) seen.Expected[static_cast<std::size_t>(rating.Response)] = 1;
    all.push_back(seen);
  }
  return all;
}

// Raters of facet 2 rate persons on items, some of which are dichotomies: tops differ within a match when items do not
// match. Some lines count more than once, and a person whom all give the highest rating is extreme.
TEST(Agreement, CountsAllPairs) {
  int checked = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    constexpr int kDichotomies = 1;
    std::mt19937 random(seed);
    Design design({5, 4, 3}, "\n?,?,1,D\n?,?,2-3,R3\n*");
    for (int person = 1; person <= 5; ++person)
      for (int rater = 1; rater <= 4; ++rater)
        for (int item = 1; item <= 3; ++item) {
          if (random() % 4 == 0) continue;
          const int top = item <= kDichotomies ? 1 : 3;
          const int response = person == 5 ? top : static_cast<int>(random() % static_cast<unsigned>(top + 1));
          // Now and then a rater rates the same thing twice: that is no pair.
          for (int time = random() % 7 == 0 ? 0 : 1; time < 2; ++time)
            design.Ratings.push_back({{person, rater, item}, response, 1.0 + 0.5 * static_cast<double>(random() % 3)});
        }
    const bool onPersonsAlone = seed % 2 == 0;
    const std::vector<int> matching = onPersonsAlone ? std::vector<int>{1} : std::vector<int>{1, 3};
    const FinishedAnalysis run = design.Run({onPersonsAlone ? "Inter-rater=2,1" : "Inter-rater=2", "Tables=N"});
    ASSERT_TRUE(run.Finished());
    const std::vector<Seen> all = Ratings(design, run, kDichotomies);
    // Categories that nobody used are closed up, which a count by raw responses does not show.
    if (run.Steps(ScaleNumber{1}).size() != 3) continue;
    ++checked;

    Pairs total;
    std::array<Pairs, 4> byRater{};
    for (std::size_t a = 0; a < all.size(); ++a)
      for (std::size_t b = a + 1; b < all.size(); ++b) {
        const int first = all[a].Elements[1];
        const int second = all[b].Elements[1];
        if (first == second || !SameThing(all[a], all[b], matching)) continue;
        total.Add(all[a], all[b]);
        byRater[static_cast<std::size_t>(first - 1)].Add(all[a], all[b]);
        byRater[static_cast<std::size_t>(second - 1)].Add(all[a], all[b]);
      }
    const Agreement& found = run.A.Agreement;
    ASSERT_TRUE(found.Computed());
    EXPECT_NEAR(found.AgreementOpportunities, total.Opportunities, 1e-9);
    EXPECT_NEAR(found.ExactAgreements, total.Exact, 1e-9);
    EXPECT_NEAR(found.ExpectedAgreements, total.Expected, 1e-4);
    for (int rater = 1; rater <= 4; ++rater) {
      const Pairs& pairs = byRater[static_cast<std::size_t>(rater - 1)];
      const RaterAgreement& own = found.Of(run.At(2, rater));
      if (pairs.Opportunities == 0) continue;
      EXPECT_NEAR(double{own.RaterExact}, 100 * pairs.Exact / pairs.Opportunities, 1e-4);
      EXPECT_NEAR(double{own.RaterExpected}, 100 * pairs.Expected / pairs.Opportunities, 1e-3);
    }
  }
  EXPECT_GT(checked, 30);
}

// Each rater has a scale, and rater 2 never gives the lowest category: closed up, that scale counts from 0 all the
// same.
TEST(Agreement, RatingsOfDifferentScalesAreEqualAsGiven) {
  std::mt19937 random(3);
  Design design({12, 2, 3}, "?,#,?,R3");
  double equal = 0;
  for (int person = 1; person <= 12; ++person)
    for (int item = 1; item <= 3; ++item) {
      const int first = static_cast<int>(random() % 4);
      const int second = std::max(1, first - static_cast<int>(random() % 2));
      design.Ratings.push_back({{person, 1, item}, first});
      design.Ratings.push_back({{person, 2, item}, second});
      equal += first == second ? 1 : 0;
    }
  const FinishedAnalysis run = design.Run({"Inter-rater=2", "Tables=N"});
  EXPECT_EQ(run.A.Agreement.AgreementOpportunities, 36);
  EXPECT_EQ(run.A.Agreement.ExactAgreements, equal);
}

TEST(Agreement, WhatCannotBeComparedIsToldAndTheAnalysisGoesOn) {
  const Design design = SimulatedDesign({8, 4, 3}, 2, 5);
  const FinishedAnalysis beyond = design.Run({"Inter-rater=7"});
  EXPECT_TRUE(beyond.Finished());
  EXPECT_TRUE(
      beyond.Warns("Inter-rater agreement facet 7 is not active in the data: interrater agreement not computed"));
  const FinishedAnalysis alone = design.Run({"Inter-rater=2,2"});
  EXPECT_TRUE(alone.Warns("No active agreement facets: interrater agreement not computed"));
  EXPECT_FALSE(alone.A.Agreement.Computed());
  EXPECT_EQ(alone.Report.find("Exact Agree."), std::string::npos);
  // One rater has nobody to agree with.
  const FinishedAnalysis one = SimulatedDesign({8, 1, 3}, 2, 5).Run({"Inter-rater=2"});
  EXPECT_TRUE(one.Finished());
  EXPECT_FALSE(one.A.Agreement.Computed());
}

/// Weighted correlation of pairs (x, y).
class Correlation {
 public:
  void Add(double x, double y, double w) {
    n_ += w;
    x_ += w * x;
    y_ += w * y;
    xx_ += w * x * x;
    yy_ += w * y * y;
    xy_ += w * x * y;
  }
  double Value() const {
    const double spread = (n_ * xx_ - x_ * x_) * (n_ * yy_ - y_ * y_);
    return spread > 1e-9 ? (n_ * xy_ - x_ * y_) / std::sqrt(spread) : 0;
  }

 private:
  double n_ = 0, x_ = 0, y_ = 0, xx_ = 0, yy_ = 0, xy_ = 0;
};

/// Point-biserial correlations of facet `facet`: each response against the mean response of each other element of the
/// observation, over all of that element's responses or all but this one.
double PointBiserialOf(const Design& design, int facet, int number, bool including) {
  Correlation correlation;
  for (const Rating& rating : design.Ratings) {
    if (rating.Elements[static_cast<std::size_t>(facet - 1)] != number) continue;
    for (std::size_t other = 0; other < rating.Elements.size(); ++other) {
      if (static_cast<int>(other) == facet - 1) continue;
      double score = 0;
      double count = 0;
      for (const Rating& theirs : design.Ratings) {
        if (theirs.Elements[other] != rating.Elements[other]) continue;
        score += theirs.Replication * theirs.Response;
        count += theirs.Replication;
      }
      if (!including) {
        score -= rating.Replication * rating.Response;
        count -= rating.Replication;
      }
      if (count > 0) correlation.Add(rating.Response, score / count, rating.Replication);
    }
  }
  return correlation.Value();
}

TEST(Correlations, PointBiserialByDefinition) {
  Design design = SimulatedDesign({6, 4, 3}, 3, 11);
  for (std::size_t at = 0; at < design.Ratings.size(); at += 5) design.Ratings[at].Replication = 2;
  for (const bool including : {false, true}) {
    const FinishedAnalysis run = design.Run({including ? "Pt-biserial=Include" : "Pt-biserial=Yes"});
    for (int facet = 1; facet <= 3; ++facet)
      for (int number = 1; number <= design.Counts[static_cast<std::size_t>(facet - 1)]; ++number)
        EXPECT_NEAR(double{run.Fit(facet, number).Correlation}, PointBiserialOf(design, facet, number, including), 1e-5)
            << facet << ' ' << number;
  }
}

TEST(Correlations, PointMeasureByDefinition) {
  const Design design = SimulatedDesign({12, 4, 3}, 3, 12);
  const FinishedAnalysis run = design.Run();
  const std::vector<double> steps = run.Steps(ScaleNumber{0});
  for (int facet = 1; facet <= 3; ++facet) {
    for (int number = 1; number <= design.Counts[static_cast<std::size_t>(facet - 1)]; ++number) {
      if (Extreme(run.Status(facet, number))) continue;
      Correlation observed;
      double n = 0, variances = 0, e = 0, ee = 0, x = 0, xx = 0, xe = 0;
      for (const Rating& rating : design.Ratings) {
        if (rating.Elements[static_cast<std::size_t>(facet - 1)] != number) continue;
        double measure = 0;
        for (int f = 1; f <= 3; ++f)
          measure += (f == 1 ? 1 : -1) * run.Measure(f, rating.Elements[static_cast<std::size_t>(f - 1)]);
        const std::vector<double> p = Probabilities(measure, steps);
        double mean = 0;
        double square = 0;
        for (std::size_t k = 0; k < p.size(); ++k) {
          mean += static_cast<double>(k) * p[k];
          square += static_cast<double>(k * k) * p[k];
        }
        observed.Add(measure, rating.Response, 1);
        n += 1;
        variances += square - mean * mean;
        e += mean, ee += mean * mean, x += measure, xx += measure * measure, xe += measure * mean;
      }
      EXPECT_NEAR(double{run.Fit(facet, number).Correlation}, observed.Value(), 1e-4) << facet << ' ' << number;
      // The model's responses vary about their expectations: that much spread is added to the expectations'.
      const double spread = ee - e * e / n + (n - 2) / n * variances;
      EXPECT_NEAR(double{run.Fit(facet, number).ExpectedCorrelation},
                  (xe - x * e / n) / std::sqrt(spread * (xx - x * x / n)), 1e-4)
          << facet << ' ' << number;
    }
  }
}

}  // namespace
}  // namespace tessaly
