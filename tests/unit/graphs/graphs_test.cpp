#include "graphs/graphs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <utility>

#include "fixture/design.h"
#include "graphs/empirical_curves.h"
#include "graphs/empirical_interval.h"
#include "unit/model/scale_bed.h"

namespace tessaly {
namespace {

/// One reported rating scale whose ordinals are the categories 2, 3, ... of the data.
Analysis OneReported(const std::vector<float>& steps, float uscale = 1) {
  Analysis a;
  const auto top = static_cast<std::int32_t>(steps.size()) - 1;
  a.Scales = OneScale(steps, top + 2);
  for (std::int32_t raw = 0; raw <= top + 2; ++raw)
    a.Scales.CategoryOrdinal(kScale, raw) = static_cast<std::int16_t>(raw - 2);
  a.Scales.Scales[kScale].ScaleBottomRaw = 2;
  a.Scales.ScaleOrder = {kScale};
  a.Models.Statements.add({});
  a.Models.Statements[{0}].ModelField = {"R", "R4", "1", ""};
  a.Settings.Uscale = uscale;
  return a;
}

/// Random observations of that scale over -3 to 3 logits.
EmpiricalData Observed(std::int32_t top, float uscale, unsigned seed) {
  std::mt19937 random(seed);
  BinCounts counts;
  for (int i = 0; i < 400; ++i) {
    const std::int32_t bin = 1 + static_cast<std::int32_t>(random() % 601);
    const auto k = static_cast<std::int32_t>(random() % static_cast<unsigned>(top + 1));
    counts.Add(bin, k, k + 2);
  }
  return {std::move(counts).Sorted(), {0, top + 1}, MeasureBins(-3, 3), uscale};
}

std::vector<std::string> Names(const CurvePlot& plot) {
  std::vector<std::string> names;
  for (const Series& series : plot.Curves) names.push_back(series.Name);
  return names;
}

using Texts = std::vector<std::string>;

TEST(Graphs, SeriesOfEachKind) {
  Analysis a = OneReported({0, -1, 1});
  ResponseKernel kernel(a.Scales, 80);
  const EmpiricalData data = Observed(2, 1, 7);
  Graphs graphs(a, kernel, &data);
  GraphSwitches all;
  all.ShowEmpirical = all.ShowConfidence = all.ShowZones = true;
  const auto names = [&](GraphKind kind, GraphSwitches shown) { return Names(graphs.Plot({kind, 1, shown, {}})); };
  EXPECT_EQ(names(GraphKind::CategoryProbability, all),
            (Texts{"Category probability: 2", "Category probability: 3", "Category probability: 4",
                   "Scored category observed: 2", "Scored category observed: 3", "Scored category observed: 4"}));
  EXPECT_EQ(names(GraphKind::ExpectedScore, all),
            (Texts{"Expected score ogive: Model ICC", "Empirical ICC", "Upper 95% 2-sided confidence interval",
                   "Lower 95% 2-sided confidence interval", "Expected 0.5 zones"}));
  const Texts line{"0.5 Probability line"};
  EXPECT_EQ(names(GraphKind::CumulativeProbability, {}),
            (Texts{"Cumulative probabilities: 2", "Cumulative probabilities: 3", line[0]}));
  EXPECT_EQ(names(GraphKind::ItemInformation, all), Texts{"Item information function"});
  EXPECT_EQ(names(GraphKind::CategoryInformation, all).back(), "Category information function for: 4");
  EXPECT_EQ(names(GraphKind::ConditionalProbability, all),
            (Texts{"Conditional probability: 2 and 3", "Conditional probability: 3 and 4", line[0]}));
  EXPECT_EQ(names(GraphKind::ExpectedScore, {false, false, true, false}).size(), 2U);
  EXPECT_EQ(names(GraphKind::ExpectedScore, {false, false, false, true}), Texts{"Expected 0.5 zones"});
  EXPECT_TRUE(names(GraphKind::ExpectedScore, {false}).empty());

  const CurvePlot scores = graphs.Plot({GraphKind::ExpectedScore, 1, all, {}});
  EXPECT_EQ(scores.Title, "Model = R4");
  // Zones: from the left end of the controls to the half points of the ogive, and down.
  const auto& zones = scores.Curves.back().Points;
  ASSERT_EQ(zones.size(), 7U);
  EXPECT_FALSE(zones[3]);
  EXPECT_EQ(zones[4]->X, static_cast<float>(scores.X.SliderMin));
  EXPECT_EQ(zones[5]->Y, 3.5F);
  EXPECT_EQ(zones[6]->X, zones[5]->X);
  EXPECT_EQ(zones[6]->Y, 2);
  const double x = double{zones[5]->X};
  const double e1 = std::exp(x + 1);
  const double e2 = std::exp(2 * x);
  EXPECT_NEAR((e1 + 2 * e2) / (1 + e1 + e2), 1.5, 0.02);

  // Turned over, a cumulative curve is that of the categories above.
  const CurvePlot up = graphs.Plot({GraphKind::CumulativeProbability, 1, {}, {}});
  GraphSwitches flip;
  flip.Flip = true;
  const CurvePlot down = graphs.Plot({GraphKind::CumulativeProbability, 1, flip, {}});
  EXPECT_EQ(down.Curves[0].Name, "Cumulative probabilities: 3");
  for (std::size_t i = 0; i < up.Curves[0].Points.size(); ++i)
    EXPECT_EQ(down.Curves[0].Points[i]->Y, 1 - up.Curves[0].Points[i]->Y);
  EXPECT_EQ(up.Curves.back().Points.back()->X, static_cast<float>(up.X.FullMax));
}

TEST(Graphs, OddRequests) {
  Analysis a = OneReported({0, -1, 9, 1});
  a.Scales.CategoryAnchor(kScale, 2) = CategoryAnchor::KeptUnobserved;
  ResponseKernel kernel(a.Scales, 80);
  Graphs graphs(a, kernel, nullptr);
  GraphSwitches empirical{false, true, true, false};
  EXPECT_TRUE(graphs.Plot({GraphKind::ExpectedScore, 1, empirical, {}}).Curves.empty());
  const CurvePlot conditional = graphs.Plot({GraphKind::ConditionalProbability, 1, {}, {}});
  EXPECT_TRUE(conditional.Curves[1].Points.empty() && conditional.Curves[2].Points.empty()) << "gaps, not zeros";

  a.Scales.ScaleOrder.clear();
  const CurvePlot none = Graphs(a, kernel, nullptr).Plot({});
  EXPECT_TRUE(none.Curves.empty());
  EXPECT_EQ(none.X.ShownMax, 1);
}

// Whatever was asked before, and round about both ends.
TEST(Graphs, EachScaleHasItsOwnCurves) {
  const FinishedAnalysis run = SimulatedDesign({30, 3}, 2, 5, 0.1, 2).Run();
  ASSERT_TRUE(run.Finished());
  ResponseKernel kernel(run.A.Scales, 80);
  Graphs graphs(run.A, kernel, nullptr);
  ASSERT_EQ(graphs.ScaleCount(), 3);
  for (const auto& [asked, shown] : {std::pair(2, 2), {1, 1}, {0, 3}, {4, 1}}) {
    const CurvePlot plot = graphs.Plot({GraphKind::CategoryProbability, asked, {}, {}});
    EXPECT_EQ(plot.Scale, shown);
    const ScaleNumber scale = run.A.Scales.ScaleOrder[static_cast<std::size_t>(shown - 1)];
    const CurvePoint point = plot.Curves[1].Points[120].value();
    kernel.CategoryProbabilities(scale, ModelType::RatingScale, 2, point.X);
    EXPECT_NEAR(point.Y, kernel.Probability(1), 1e-6);
  }
}

// Every bin is gathered anew from the rows between its edges.
TEST(Graphs, EmpiricalCurvesAgainstRecount) {
  for (const float uscale : {1.0F, -10.0F}) {
    Analysis a = OneReported({0, -1, 0, 1}, uscale);
    ResponseKernel kernel(a.Scales, 80);
    const EmpiricalData data = Observed(3, uscale, 3);
    Graphs graphs(a, kernel, &data);
    for (const float width : {0.01F, 0.3F, 1.0F, 2.5F, 100.0F}) {
      CurveRequest request{GraphKind::ExpectedScore, 1, {false, true, true, false}, width};
      const CurvePlot plot = graphs.Plot(request);
      request.Kind = GraphKind::CategoryProbability;
      const CurvePlot shares = graphs.Plot(request);
      struct Bin {
        double Count = 0, Score = 0, Measure = 0;
        std::array<double, 4> Category{};
      };
      std::vector<Bin> bins(1);
      BinEdges edges(plot.EmpiricalInterval, data.Range());
      for (std::int32_t bin = 1; bin <= 601; ++bin) {
        for (; data.MeasureOf(bin) > edges.Edge(); edges.Next())
          if (bins.back().Count > 0) bins.emplace_back();
        for (std::int32_t k = 0; k <= 3; ++k) {
          for (const BinCount& row : data.CategoryRows(1, k)) {
            if (row.Bin != bin) continue;
            bins.back().Count += row.Count;
            bins.back().Score += row.Count * (k + 2);
            bins.back().Measure += row.Count * double{data.MeasureOf(bin)};
            bins.back().Category[static_cast<std::size_t>(k)] += row.Count;
          }
        }
      }
      if (bins.back().Count == 0) bins.pop_back();
      const auto& means = plot.Curves[0].Points;
      ASSERT_EQ(means.size(), bins.size());
      EXPECT_EQ(bins.size() == 1, width == 100);
      for (std::size_t i = 0; i < bins.size(); ++i) {
        const Bin& bin = bins[i];
        const double x = bin.Measure / bin.Count;
        EXPECT_NEAR(double{means[i]->X}, x, 1e-5 * (1 + std::fabs(x)));
        EXPECT_NEAR(double{means[i]->Y}, std::clamp(bin.Score / bin.Count, 2.03, 4.97), 1e-5);
        for (std::size_t k = 0; k < 4; ++k) {
          const CurvePoint share = *shares.Curves[k].Points[i];
          EXPECT_EQ(share.X, means[i]->X);
          EXPECT_NEAR(double{share.Y}, std::clamp(bin.Category[k] / bin.Count, 0.01, 0.99), 1e-6);
        }
      }
      request.Smoothing = 3;
      const Series smooth = graphs.Plot(request).Curves[0];
      EXPECT_TRUE(smooth.Smoothed);
      EXPECT_EQ(smooth.Points.front()->X, means.front()->X);
      EXPECT_EQ(smooth.Points.back()->X, means.back()->X);
    }
  }
}

// Means of a dichotomy of difficulty 0, with 1.96 standard errors to both sides: at 0, .5 and .05 for a hundred
// responses. Bounds just above the axis stay, those further out and those too near to the other end are held.
TEST(Graphs, ConfidenceBand) {
  Analysis a = OneReported({0, 0});
  ResponseKernel kernel(a.Scales, 80);
  const EmpiricalData data(
      {{1, 0, 100, 200}, {401, 0, 1, 2}, {601, 0, 100, 200}, {801, 1, 27, 81}, {1001, 1, 1, 3}, {1201, 1, 100, 300}},
      {0, 2}, MeasureBins(-6, 6), 1);
  const CurvePlot plot = Graphs(a, kernel, &data).Plot({GraphKind::ExpectedScore, 1, {true, true, true, false}, 0.5F});
  const auto values = [&](std::size_t curve) {
    std::vector<float> y;
    for (const auto& point : plot.Curves[curve].Points) y.push_back(std::round(point->Y * 1000) / 1000);
    return y;
  };
  using Values = std::vector<float>;
  EXPECT_EQ(values(1), (Values{2.01F, 2.01F, 2.01F, 2.99F, 2.99F, 2.99F}));
  EXPECT_EQ(values(2), (Values{2.015F, 2.754F, 2.598F, 3.003F, 2.995F, 2.995F}));
  EXPECT_EQ(values(3), (Values{2.005F, 2.005F, 2.402F, 2.759F, 2.722F, 2.985F}));
}

TEST(Graphs, WhatIsLeftBehindTheMostPointsIsOnePoint) {
  Analysis a = OneReported({0, -1, 1});
  ResponseKernel kernel(a.Scales, 80);
  const EmpiricalData data = Observed(2, 1, 5);
  const CurveTable table(PrepareGraphs(a).front(), FitXAxis({}, data.Range(), 1), 1, kernel);
  const YAxisSettings y;
  const EmpiricalShares shares = EmpiricalCategoryCurves({data, 1, 0.5F, y, 3}, 2);
  const std::vector<EmpiricalPoint> means = EmpiricalCurve({data, 1, 0.5F, y, 3}, table);
  ASSERT_EQ(shares.X.size(), 4U);
  ASSERT_EQ(means.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_FLOAT_EQ(means[i].X, shares.X[i]);
  const EmpiricalShares all = EmpiricalCategoryCurves({data, 1, 0.5F, y, 99}, 2);
  EXPECT_EQ(shares.X[2], all.X[2]);
  EXPECT_GT(shares.X[3], all.X[4]);
}

}  // namespace
}  // namespace tessaly
