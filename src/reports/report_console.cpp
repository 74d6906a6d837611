#include "reports/report_console.h"

#include <utility>

namespace tessaly {

void ReportConsole::ShowMessage(std::string_view text) {
  control_.Poll();
  screen_.ShowMessage(text);
}

void ReportConsole::ShowWarning(std::string_view text) {
  screen_.ShowWarning(text);
  if (reportOpen_) {
    report_.WriteTableLine(text);
  } else {
    pendingWarnings_.emplace_back(text);
  }
}

void ReportConsole::ReportLine(std::string_view text) {
  report_.WriteTableLine(text);
}

void ReportConsole::ShowProgress(std::string_view text, bool endLine) {
  control_.Poll();
  if (IterationBars) screen_.ShowProgress(text, endLine);
}

std::vector<std::string> ReportConsole::TakePendingWarnings() {
  reportOpen_ = true;
  return std::exchange(pendingWarnings_, {});
}

}  // namespace tessaly
