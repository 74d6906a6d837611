// Notes on single data: elements that `Labels=` does not declare, responses that are no category.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "data/data_line.h"
#include "data/line_references.h"
#include "data/unspecified_list.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// The fields of `line` with what became of its element references: "01 (1, Ann), 7 (7, ?),  3". The responses stand
/// behind two blanks.
std::string ProcessedLine(const DataLine& line, const LineReferences& references, const Analysis& analysis);

/// Where `datum` is: the replication field unless the replication is 1, the element numbers by position and the datum,
/// joined with commas.
std::string DatumLocation(const DataLine& line, const LineReferences& references, std::int32_t positions,
                          std::string_view datum);

/// Shows the checks of the data phase and collects unspecified elements.
class DataNotes {
 public:
  DataNotes(const Analysis& analysis, Console& console) : analysis_(analysis), console_(console) {}

  /// Notes every unspecified element of the line, unless `Labels=Nobuild`; the first one of the run is shown. Of a
  /// range the first `responses` elements count. Throws `Halt{InvalidElementReference}`, after a warning, at a text
  /// that is no reference at all.
  void NoteReferences(const DataLine& line, const LineReferences& references, ElementResolver& resolver,
                      std::int64_t responses);
  /// The first position whose text is no reference at all, 0 for none.
  PositionNumber WithoutReference(const LineReferences& references) const;
  /// What is told of such a position ahead of the failure.
  std::vector<std::string> ReferenceTrouble(const DataLine& line, PositionNumber position,
                                            const ElementResolver& resolver) const;
  /// With `Labels=Nobuild`: a model needs the unspecified element in `position`. The first one of the run is shown.
  void NoteNeeded(const DataLine& line, const LineReferences& references, PositionNumber position);
  /// Shows an invalid response once: the first three as warnings, later ones in the report.
  void NoteInvalid(const DataLine& line, const LineReferences& references, std::string_view datum);

  const UnspecifiedList& Unspecified() const { return unspecified_; }

 private:
  bool Building() const { return analysis_.Settings.LabelsBuild != 'N'; }
  void NoteRange(const DataLine& line, const LineReferences& references, ElementResolver& resolver,
                 std::int64_t responses);
  /// "in line 3", and of which of several files that include no others.
  std::string InLine() const;
  UnspecifiedElement ElementAt(const DataLine& line, const LineReferences& references, PositionNumber position) const;
  void Note(const UnspecifiedElement& element, const DataLine& line, const LineReferences& references);
  void ShowFirst(const UnspecifiedElement& element, const DataLine& line, const LineReferences& references);

  const Analysis& analysis_;
  Console& console_;
  UnspecifiedList unspecified_;
  bool showUnspecified_ = true;
  std::unordered_set<std::string> invalidSeen_;
};

}  // namespace tessaly
