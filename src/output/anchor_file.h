// The anchor file: a specification with the estimates of an analysis, from which a later run can start.
#pragma once

#include <string>
#include <vector>

#include "output/text_output.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// What an anchor file is to hold.
struct AnchorRequest {
  /// Measures and thresholds are anchors; otherwise starting values.
  bool FlagAsAnchors = true;
  /// Data that stand in the specification are copied too.
  bool IncludeData = true;
  /// The settings in force, in place of the keyword lines of the specification.
  bool CurrentSettings = false;
  /// The extra specifications of the command line: they went before the specification, and do so in the anchor file.
  std::vector<std::string> ExtraSpecs = {};
};

/// Writes the anchor file of a finished analysis: the keyword lines of its specification, which is read once more, then
/// `Umean=` and the blocks as they have become, then the data or where they are. An analysis of it gives the same
/// measures and thresholds. Lines with the names of the report and of the anchor file are comments. The caller opens
/// and closes `file`, which must not be the specification or one that it includes. Throws `Halt` if the specification
/// cannot be read; the file is then not complete.
void WriteAnchorFile(const AnchorRequest& request, const Analysis& analysis, Console& console, TextOutput& file);

}  // namespace tessaly
