// The console of an analysis: what it says goes to the screen, and where it belongs also into the report.
#pragma once

#include <string>
#include <vector>

#include "reports/report_writer.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Forwards to the shell's console, polls the user with every status line and some lines of the report, adds warnings
/// to the report, or keeps them for Table 1 as long as that has not been written.
class ReportConsole : public Console {
 public:
  ReportConsole(Console& screen, RunControl& control, ReportWriter& report)
      : screen_(screen), control_(control), report_(report) {
    report.PollWith(control);
  }

  void ShowMessage(std::string_view text) override;
  void ShowWarning(std::string_view text) override;
  void ReportLine(std::string_view text) override;
  void ShowProgress(std::string_view text, bool endLine) override;
  void ShowFatal(std::string_view text) override { screen_.ShowFatal(text); }
  void Beep() override { screen_.Beep(); }

  /// Whether marks of progress are shown.
  bool IterationBars = true;

  /// Hands over the warnings that came before; from here on warnings go to the report at once.
  std::vector<std::string> TakePendingWarnings();

 private:
  Console& screen_;
  RunControl& control_;
  ReportWriter& report_;
  std::vector<std::string> pendingWarnings_;
  bool reportOpen_ = false;
};

}  // namespace tessaly
