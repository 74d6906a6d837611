// Status lines to standard output, warnings to standard error.
#pragma once

#include <string_view>

#include "support/host.h"

namespace tessaly {

/// The console of the command line. On a terminal warnings are coloured and long passes show their progress marks;
/// into a pipe or file there is neither.
class BatchConsole : public Console {
 public:
  BatchConsole();

  void ShowMessage(std::string_view text) override;
  void ShowWarning(std::string_view text) override;
  void ShowProgress(std::string_view text, bool endLine) override;
  void ShowFatal(std::string_view text) override;
  void Beep() override;

 private:
  void EndProgressLine();

  bool terminalOut_;
  bool terminalError_;
  bool progressRunning_ = false;
};

}  // namespace tessaly
