#include "spec/labels_block.h"

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

void ReadLabels(SpecContext& context, const SplitLine& line) {
  context.RefuseAsExtra();
  const InputLine& at = context.Analysis.Input;
  std::vector<StoredLine>& block = context.Waiting.Labels;
  block.push_back({at.LineNumber, at.LastLine});
  context.Analysis.Settings.LabelsBuild = line.Value(1).empty() ? 'B' : UpperAscii(line.Value(1).front());

  std::string ending;
  while (const std::optional<std::string_view> work = context.Reader.ReadLine()) {
    if (!IsDigit(work->front()) && work->front() != '*') {
      context.Reader.Unread();
      ending = *work;
      break;
    }
    block.push_back({at.LineNumber, std::string(*work)});
  }
  if (block.back().Text.front() == '*') return;
  context.Host.console.ShowMessage("");
  context.Host.console.ShowWarning("Warning (19)! at line" + GeneralText(at.LineNumber) + " \"" + ending +
                                   "\" * or number = value expected");
}

}  // namespace tessaly
