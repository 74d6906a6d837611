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

  /// The system's error that kept something from standard output, 0 for none. A reader who went away, or a
  /// terminal, is none.
  int OutputError() const { return outputError_; }

  void ShowMessage(std::string_view text) override;
  void ShowWarning(std::string_view text) override;
  void ShowProgress(std::string_view text, bool endLine) override;
  void ShowFatal(std::string_view text) override;
  void Beep() override;

 private:
  void EndProgressLine();
  void Write(std::string_view text);

  bool terminalOut_;
  bool terminalError_;
  bool progressRunning_ = false;
  int outputError_ = 0;
};

}  // namespace tessaly
