#include "data/invalid_lines.h"

#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

void LineRefusal::Refuse(FailureCode failure, const std::vector<std::string>& explanation) {
  if (!Skips()) throw Halt{failure, Joined(explanation, " ")};
  ++analysis_.Counters.SkippedLines;
  const bool first = told_.insert(failure).second;
  if (!first && analysis_.Settings.InvalidLinesOption == InvalidLines::Single) return;
  for (const std::string& text : explanation) console_.ShowWarning(text);
  const InputLine& line = analysis_.Input;
  for (const std::string& text :
       FailureReport({failure, {}}, analysis_.Limits(), "Data line in " + analysis_.CurrentDataFile, line.LineNumber,
                     line.LastLine))
    console_.ShowWarning(text);
}

}  // namespace tessaly
