// All tables and settings of one analysis: a plain value that procedures fill and read.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "state/agreement.h"
#include "state/counters.h"
#include "state/elements.h"
#include "state/facets.h"
#include "state/models.h"
#include "state/scales.h"
#include "state/settings.h"
#include "state/subsets.h"
#include "support/failure.h"

namespace tessaly {

/// The line that a failure quotes. 0 and an empty text when there is none.
struct InputLine {
  std::int64_t LineNumber = 0;
  std::string LastLine;
};

/// From a line on, as lines are counted through include files, lines come from another file.
struct SourceChange {
  std::int64_t FirstLine = 0;
  std::string File;
  /// Number of the first one in its file.
  std::int64_t OwnLine = 0;
};

/// One analysis.
struct Analysis {
  tessaly::Settings Settings;
  FacetTable Facets;
  FieldMap Fields;
  ElementTable Elements;
  ModelTables Models;
  ScaleTables Scales;
  DataCounters Counters;
  SubsetTable Subsets;
  tessaly::Agreement Agreement;
  /// Elements that data name and `Labels=` does not, sorted by facet, label, number.
  std::vector<UnspecifiedElement> Unspecified;
  /// Labels of element groups, by facet and group number.
  std::map<std::pair<std::int32_t, std::int32_t>, std::string> GroupLabels;
  /// Every specification line that contains ";;", in order.
  std::vector<std::string> SpecComments;
  /// The line most recently read.
  InputLine Input;
  /// The files of the lines of the input at hand, in order of lines.
  std::vector<SourceChange> Sources;
  /// The data file at hand, in parentheses for data inside the specification file; empty before the data phase.
  std::string CurrentDataFile;
  /// Facet of the last lookup in a facet without elements, 0 for none.
  FacetNumber EmptyFacet{0};
  /// Warnings to be repeated at the very end of the run.
  std::string ConstraintWarning;
  std::string SubsetWarning{kSubsetsNotVerified};

  std::int32_t FacetCount() const { return Facets.size(); }
  FailureLimits Limits() const {
    return {Facets.size(), Fields.DataFacetCount(), Fields.ActiveFacetCount(), Fields.ActiveFacetCount() + 3};
  }
};

}  // namespace tessaly
