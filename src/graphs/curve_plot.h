// One picture of curves as numbers: what is asked for, and what any form of output draws.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The families of curves.
enum class GraphKind {
  CategoryProbability = 1,
  ExpectedScore,
  CumulativeProbability,
  ItemInformation,
  CategoryInformation,
  ConditionalProbability,
};

/// Which series a picture shows. Confidence bands and zones belong to expected scores, `Flip` to cumulative
/// probabilities, empirical series to category probabilities and expected scores.
struct GraphSwitches {
  bool ShowModel = true;
  bool ShowEmpirical = false;
  bool ShowConfidence = false;
  bool ShowZones = false;
  /// Curves of "this category or above" in place of "up to this category".
  bool Flip = false;
};

/// Default place of the control of the empirical interval, 1 (widest) to 200.
constexpr std::int32_t kMiddleInterval = 100;

/// What is asked for.
struct CurveRequest {
  GraphKind Kind = GraphKind::CategoryProbability;
  /// Place of the scale in the reports, from 1; places beyond either end wrap to the other.
  std::int32_t Scale = 1;
  GraphSwitches Switches;
  /// Width of an empirical bin (user units); nothing for that of `IntervalPosition`.
  std::optional<float> Interval;
  std::int32_t IntervalPosition = kMiddleInterval;
  /// 0 none to 10: how strongly empirical series are smoothed.
  std::int32_t Smoothing = 0;
};

/// A point: x in user units relative to the difficulty, y by the kind of the picture.
struct CurvePoint {
  float X = 0;
  float Y = 0;
};

/// What a curve is in its picture.
enum class SeriesRole {
  Model,
  Empirical,
  /// A bound of the confidence band.
  UpperBound,
  LowerBound,
  /// Half-score zones and the line of probability 0.5: dashed.
  Guide,
};

/// One curve.
struct Series {
  SeriesRole Role = SeriesRole::Model;
  std::string Name;
  /// The ordinal category that it is of, for series of categories.
  std::optional<std::int32_t> Category;
  /// In drawing order; an empty one is a gap. No gaps at the end.
  std::vector<std::optional<CurvePoint>> Points;
  /// A smoothed series: a line without markers.
  bool Smoothed = false;
};

/// The x-axis: user units.
struct XAxisSettings {
  float Divisions = 1;
  /// Extent of the computed grid.
  std::int32_t FullMin = 0;
  std::int32_t FullMax = 0;
  /// The axis as displayed.
  float ShownMin = 0;
  float ShownMax = 0;
  /// Where the range controls stand, and their bounds.
  float SliderLow = 0;
  float SliderHigh = 0;
  std::int32_t SliderMin = 0;
  std::int32_t SliderMax = 0;
};

/// The y-axis of one kind.
struct YAxisSettings {
  std::int32_t Divisions = 1;
  std::int32_t FullMin = 0;
  std::int32_t FullMax = 0;
  std::int32_t SliderMin = 0;
  std::int32_t SliderMax = 0;
  std::int32_t SliderLow = 0;
  std::int32_t SliderHigh = 0;
  float ShownMin = 0;
  float ShownMax = 0;
};

/// A finished picture.
struct CurvePlot {
  GraphKind Kind = GraphKind::CategoryProbability;
  /// Place of the scale in the reports, from 1.
  std::int32_t Scale = 1;
  /// Of the scale: "Model = ...".
  std::string Title;
  XAxisSettings X;
  YAxisSettings Y;
  /// Width of the empirical bins (user units) and the place of its control; as they stand also without empirical
  /// series.
  float EmpiricalInterval = 0;
  std::int32_t IntervalPosition = kMiddleInterval;
  std::vector<Series> Curves;
};

constexpr std::string_view kMeasureAxisTitle = "Measure relative to item difficulty";

/// "Expected Score ICC" and the like: what a picture of this kind is called.
std::string_view WindowTitle(GraphKind kind);
/// "Score on Item" and the like.
std::string_view AxisTitle(GraphKind kind);

}  // namespace tessaly
