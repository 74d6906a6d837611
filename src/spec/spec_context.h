// What keyword handlers work on: the analysis, the reader, and blocks that wait for the end of the specification.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "spec/spec_reader.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// A cleaned line that is kept for later.
struct StoredLine {
  std::int64_t LineNumber = 0;
  std::string Text;
};

/// A model statement as written.
struct StatementLine {
  std::int64_t LineNumber = 0;
  std::vector<std::string> Fields;
};

/// One entry of `Dvalues=`. With a source column, the piece of the label of its element; otherwise a fixed text.
struct DvaluesEntry {
  StoredLine Line;
  ColumnNumber Column{0};
  ColumnNumber Source{0};
  std::string Text;
  std::int32_t Start = 0;
  std::int32_t Length = 0;
};

/// What can only be used when every keyword has been read.
struct WaitingBlocks {
  std::vector<StatementLine> Models;
  /// The line `Labels=` and the block behind it.
  std::vector<StoredLine> Labels;
  std::vector<DvaluesEntry> Dvalues;
  bool EnteredGiven = false;
};

/// The specification phase at work.
struct SpecContext {
  tessaly::Analysis& Analysis;
  tessaly::Host& Host;
  SpecReader& Reader;
  WaitingBlocks Waiting = {};
  /// The command line and the extra specifications are being applied: no blocks.
  bool ExtraSpecPhase = false;
  /// Entries of all rating scale blocks so far.
  std::size_t DefinedCategories = 0;
  /// Keywords met so far, by row of the keyword table.
  std::set<std::string_view> KeywordSeen = {};

  /// Refuses a block in the extra specifications. Throws `Halt{ExtraSpecificationInvalid}`.
  void RefuseAsExtra() const {
    if (ExtraSpecPhase) throw Halt{FailureCode::ExtraSpecificationInvalid, {}};
  }
  /// Throws `Halt{FacetsFirst}` as long as the number of facets is not known.
  void RequireFacets() const {
    if (Analysis.FacetCount() == 0) throw Halt{FailureCode::FacetsFirst, {}};
  }
};

}  // namespace tessaly
