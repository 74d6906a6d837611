// The rows of a table of bias terms.
#pragma once

#include <string>
#include <vector>

#include "estimate/moments.h"
#include "interaction/bias_terms.h"
#include "reports/measurement_layout.h"
#include "state/analysis.h"

namespace tessaly {

/// Moments over the terms of a table. Sizes have the sign of `Bias=`; logits.
struct BiasSummaries {
  RunningMoments Observed;
  RunningMoments Expected;
  RunningMoments Count;
  RunningMoments ObservedMinusExpected;
  RunningMoments Size;
  RunningMoments StandardError;
  RunningMoments TStatistic;
  RunningMoments TSquare;
  RunningMoments InfitMeanSquare;
  RunningMoments OutfitMeanSquare;

  void Add(const BiasTerm& term, float direction);
};

/// The layout of a bias run and the lines in it.
class BiasRows {
 public:
  BiasRows(const BiasTerms& terms, const Analysis& analysis);

  const MeasurementLayout& Layout() const { return layout_; }
  /// Whether `Zscore=` wants a row of the term.
  bool Shown(TermIndex term) const;
  std::string Line(TermIndex term) const;
  /// Mean, S.D. as a population and, for more than one term, S.D. as a sample.
  std::vector<std::string> SummaryLines(const BiasSummaries& summaries) const;
  /// 1 or -1.
  float Direction() const { return direction_; }

 private:
  LabelColumn Headings() const;
  /// Sequence number, and number, label and measure of each element.
  std::string Label(TermIndex term) const;
  /// In user units.
  std::string Size(double size) const;
  std::string Error(double error) const;

  const BiasTerms& terms_;
  const Analysis& analysis_;
  const Settings& settings_;
  float direction_;
  /// Columns of the sequence number.
  int sequenceWidth_;
  MeasurementLayout layout_;
};

}  // namespace tessaly
