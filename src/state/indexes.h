// The index spaces of an analysis.
#pragma once

#include "support/index.h"

namespace tessaly {

/// A facet, 1..FacetCount: the number that `Labels=` gives it.
using FacetNumber = Index<struct FacetTag>;
/// A place of an element reference in a data line, 1..DataFacetCount.
using ColumnNumber = Index<struct ColumnTag>;
/// A place of a model statement, 1..ActiveFacetCount: a data column that `Entered=` ties to a facet.
using PositionNumber = Index<struct PositionTag>;
/// A record of the element table, 1..ElementCount.
using ElementIndex = Index<struct ElementTag>;
/// A line of `Models=`, from 0.
using StatementNumber = Index<struct StatementTag>;
/// A combination of statement and `#` elements that occurs in the data, from 0.
using CellNumber = Index<struct CellTag>;
/// A set of category parameters that is estimated, from 0.
using ScaleNumber = Index<struct ScaleTag>;
/// A rating scale block as the user wrote it, from 0.
using DefinitionNumber = Index<struct DefinitionTag>;
/// A bias term: a combination of elements of the bias facets that occurs in the data, 1..term count.
using TermIndex = Index<struct TermTag>;

/// What the null element and a position without element map to.
constexpr ElementIndex kNoElement{0};
/// A reference to an element that `Labels=` does not declare.
constexpr ElementIndex kUnspecifiedElement{-1};
/// A reference that is neither a number nor a known label.
constexpr ElementIndex kNotAReference{-2};
/// A reference derived from a column that has no position.
constexpr ElementIndex kUnderivable{-4};

constexpr DefinitionNumber kNoDefinition{-1};
/// `ModelFirstCell`, `ElementModel`: several cells; no cell yet.
constexpr CellNumber kSeveralCells{-1};
constexpr CellNumber kNoCell{-2};

/// Highest element number that a user may write.
constexpr std::int32_t kHighestElementNumber = 2147483646;

}  // namespace tessaly
