// The element table: elements of a facet are contiguous and ascending by element number.
#pragma once

#include <string>

#include "state/indexes.h"

namespace tessaly {

enum class ElementStatus : std::int8_t {
  Anchored = 1,
  Active = -1,
  Unobserved = 0,
  Minimum = -2,
  Maximum = -3,
  Unmeasurable = -4,
  OneDatum = -5,
};

/// Anchored or active: the element has a measure of its own.
constexpr bool Measurable(ElementStatus status) {
  return status == ElementStatus::Anchored || status == ElementStatus::Active;
}
/// Extreme or one datum (status below -1 that still has a measure, and unmeasurable).
constexpr bool BelowActive(ElementStatus status) {
  return status < ElementStatus::Active;
}
/// Neither observations nor a measure.
constexpr bool WithoutMeasure(ElementStatus status) {
  return status == ElementStatus::Unobserved || status == ElementStatus::Unmeasurable;
}

/// Observed totals and declared properties of one element. Scores and counts are weighted.
struct ElementRecord {
  /// Sum of weight times ordinal response over the usable observations (reversed where the position is marked `-`).
  double ObservedScore = 0;
  /// Sum of weight times the top category; 0 without observations.
  double PossibleScore = 0;
  double ObservedCount = 0;
  /// Sum of weight times raw response.
  double RawScore = 0;
  /// `RawScore` and `ObservedCount` of the first pass: they include observations in extreme scores.
  double AllScore = 0;
  double AllCount = 0;
  /// Smallest non-zero weight met.
  float SmallestWeight = 0;
  /// Fifth field of the element line; multiplies the weight of each observation of the element.
  float ElementWeight = 1;
  /// User value in logits before the estimation; 0 for none (a user value of 0 is `SmallestNumber` unless it is an
  /// anchor).
  float AnchorValue = 0;
  /// Sixth field of the element line: the record that stands in for this one in data, -1 for none.
  ElementIndex TargetElement = kUnspecifiedElement;
};

/// Sums of one estimation pass for one element. In one cache line, whichever element it is: where elements come in any
/// order, getting at its sums is what an observation costs.
struct alignas(32) EstimationSums {
  /// JMLE: sum of w E. PROX: sum of w m, with m the other positions' measures.
  double ExpectedScore = 0;
  /// Sum of w E', with E' the expected response at the measure less `CurveProbe`.
  double ExpectedScoreProbe = 0;
  /// JMLE: sum of w V. PROX: sum of w m m.
  float Information = 0;
  /// PROX: sum of w.
  float ProxWeight = 0;
};

/// Fit results of one element, in logits where they are measures.
struct ElementFit {
  float StandardError = 0;
  float InfitMeanSquare = 1;
  float InfitZStd = 0;
  float InfitFreedom = 0;
  float OutfitMeanSquare = 1;
  float OutfitZStd = 0;
  float OutfitFreedom = 0;
  float Displacement = 0;
  float Discrimination = 1;
  /// Weighted sum of fair scores, in raw categories.
  float FairScoreSum = 0;
  /// Point-biserial or point-measure correlation, and the model's expectation of the latter.
  float Correlation = 0;
  float ExpectedCorrelation = 0;
};

/// All elements of all facets, by record index.
struct ElementTable {
  Table<ElementIndex, std::int32_t> ElementNumber;
  Table<ElementIndex, std::string> ElementLabel;
  /// Third field of the element line as written.
  Table<ElementIndex, std::string> ElementAnchorText;
  /// Positive: member of a group whose mean is held; negative: number of a group that constrains nothing; 0 none.
  Table<ElementIndex, std::int16_t> ElementGroup;
  /// Current estimate or anchor, logit.
  Table<ElementIndex, float> ElementMeasure;
  Table<ElementIndex, tessaly::ElementStatus> ElementStatus;
  /// For `#` positions: the only cell of the element, `kNoCell`, or `kSeveralCells`.
  Table<ElementIndex, CellNumber> ElementModel;
  Table<ElementIndex, ElementRecord> ElementStats;
  Table<ElementIndex, ElementFit> Fit;
  /// Some element has a weight other than 1.
  bool WeightsUsed = false;

  std::int32_t ElementCount() const { return ElementNumber.size(); }

  /// Sets all tables to `count` elements in their initial state.
  void Create(std::int32_t count) {
    ElementNumber.assign(count, 0);
    ElementLabel.assign(count, {});
    ElementAnchorText.assign(count, {});
    ElementGroup.assign(count, 0);
    ElementMeasure.assign(count, 0);
    ElementStatus.assign(count, tessaly::ElementStatus::Active);
    ElementModel.assign(count, kNoCell);
    ElementStats.assign(count, {});
    Fit.assign(count, {});
    WeightsUsed = false;
  }
};

}  // namespace tessaly
