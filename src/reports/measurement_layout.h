// The columns of measurement tables.
#pragma once

#include <string>
#include <vector>

#include "support/bytes.h"

namespace tessaly {

/// Columns of a measure, and of a standard error, correlation or percentage, in a row.
constexpr int kMeasureWidth = 6;
constexpr int kErrorWidth = 5;

/// Decimals of user units that such a column has room for: with more it would lose its leading digits without a sign.
constexpr int DecimalsIn(int width, int decimals) {
  return decimals < width ? decimals : width - 1;
}

/// Correlation columns of a measurement table.
enum class CorrelationColumns { None, PointBiserial, PointBiserialIncluding, PointMeasure };

/// What a measurement table shows.
struct MeasurementColumns {
  bool TotalScore = true;
  bool FairMean = true;
  /// The facet is positively oriented.
  bool Positive = false;
  bool RealSE = false;
  bool Displacement = false;
  CorrelationColumns Correlation = CorrelationColumns::None;
  bool InterRater = false;
  bool Group = false;
  bool Weight = false;
  /// Labels stand on the left.
  bool LeftHand = false;
};

/// Headings, rule and row templates of a table, all of one width.
struct MeasurementLayout {
  std::vector<std::string> HeadLines;
  std::string RuleTemplate;
  /// An active element; a bias term.
  std::string RowFmtNormal;
  /// An element with a status word and its measure in parentheses.
  std::string RowFmtExtreme;
  /// An element without a measure.
  std::string RowFmtNonActive;
  std::string RowFmtSummary;
  /// Report columns of the label column.
  int LabelWidth = 0;
};

/// The label column of a table of bias terms: both its heading lines.
struct LabelColumn {
  std::string Head1;
  std::string Head2;
  bool LeftHand = false;
};

/// The layout of bias terms. All terms have the normal form.
MeasurementLayout BuildBiasLayout(const LabelColumn& label, const TextEncoding& encoding);

/// The layout of these columns, with `labelHead` over the labels.
MeasurementLayout BuildMeasurementLayout(const MeasurementColumns& columns, const std::string& labelHead,
                                         const TextEncoding& encoding);

}  // namespace tessaly
