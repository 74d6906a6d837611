// The facet table, and the columns and positions that tie data lines and model statements to facets.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "state/indexes.h"

namespace tessaly {

/// Where a facet's origin comes from.
enum class Centering : std::int16_t {
  NotCentered = -1,
  Centered = 0,
  /// Extreme elements count in the facet's mean too (letter Z of `Center=`).
  CenteredWithExtremes = 1,
};

/// Columns that a label has at most in tables: longer ones are cut there.
constexpr int kWidestLabel = 1000;

/// One facet.
struct Facet {
  std::string FacetLabel;
  /// Third field of the facet line in capitals, with one blank behind it. First letter: A anchored, D dummy,
  /// G group-anchored, X group-anchored with values.
  std::string FacetFlags = " ";
  std::int32_t FacetPriority = 1;
  Centering FacetCenter = Centering::Centered;
  /// Positively oriented: the measure is added in the model. Otherwise it is subtracted.
  bool FacetPositive = false;
  /// What reports call the facet, if that is not what its measures were estimated as.
  std::optional<bool> ShownPositive;
  /// Records of the facet; -1 and -2 when it has no elements, so that a loop from first to last runs zero times.
  ElementIndex FacetFirstElement{-1};
  ElementIndex FacetLastElement{-2};
  std::int32_t FacetElementCount = 0;
  std::int32_t FacetLowestNumber = -1;
  std::int32_t FacetHighestNumber = -2;
  /// The element numbers run without a gap, so that a number maps to a record by subtraction.
  bool FacetDense = false;
  /// Element number and record found by the last lookup.
  std::int32_t FacetCacheNumber = -1;
  ElementIndex FacetCacheRecord = kUnspecifiedElement;
  std::int16_t FacetGroupMax = 0;
  std::string FacetNullLabel;
  /// Mean measure (logit) of the facet's measured elements, for the mean form of `Fair=`.
  float FacetMeanMeasure = 0;
  /// Widest element number and label in report columns, labels up to `kWidestLabel`; a label width of 0 marks a facet
  /// with nothing to print.
  int FacetNumberWidth = 0;
  int FacetLabelWidth = 0;

  IndexRange<ElementIndex> Elements() const { return {FacetFirstElement, FacetLastElement}; }
  bool ShowsPositive() const { return ShownPositive.value_or(FacetPositive); }
  bool HasElements() const { return FacetElementCount > 0; }
  /// First letter of the flags; a blank for a facet without type.
  char FacetType() const { return FacetFlags.empty() ? ' ' : FacetFlags.front(); }
  bool HasFlag(char flag) const { return FacetFlags.find(flag) != std::string::npos; }
};

using FacetTable = Table<FacetNumber, Facet>;

/// A facet table of `count` facets in their default state: facet 1 positive and not centered, the others the opposite.
inline FacetTable DefaultFacets(std::int32_t count) {
  FacetTable facets(count);
  if (!facets.empty()) {
    facets[{1}].FacetPositive = true;
    facets[{1}].FacetCenter = Centering::NotCentered;
  }
  return facets;
}

/// One column of the data lines.
struct DataColumn {
  /// Facet of the column, 0 for a column without facet.
  FacetNumber ColumnFacet{0};
  /// Active position of the column, 0 for none.
  PositionNumber ColumnPosition{0};
  /// Fixed element reference of `Dvalues=`; empty if the column stands in the data line.
  std::string DvalueText;
  /// Column whose element supplies this one, 0 for none, and the piece of its label (from 1); start -1 is its group
  /// number.
  ColumnNumber DvalueSource{0};
  std::int32_t DvalueStart = 0;
  std::int32_t DvalueLength = 0;

  bool Derived() const { return DvalueSource.value != 0; }
  /// Whether the column takes up a field of the data line.
  bool OnTheLine() const { return DvalueText.empty() && !Derived(); }
};

using ColumnTable = Table<ColumnNumber, DataColumn>;

/// One position of the model statements; positions are in column order.
struct ActivePosition {
  FacetNumber PositionFacet{0};
  ColumnNumber PositionColumn{0};
  /// Some model statement names an element here (not `X`).
  bool PositionInUse = false;
};

/// What `Entered=` makes of data columns and model positions.
struct FieldMap {
  ColumnTable Columns;
  Table<PositionNumber, ActivePosition> Positions;
  /// A facet occupies more than one position.
  bool RepeatedFacet = false;
  /// Kind of element reference by facet: {'N','.'} numbers, {'L','.'} labels, or both letters in the order tried.
  Table<FacetNumber, std::array<char, 2>, 0> FacetIdentifiers;

  std::int32_t DataFacetCount() const { return Columns.size(); }
  std::int32_t ActiveFacetCount() const { return Positions.size(); }
};

}  // namespace tessaly
