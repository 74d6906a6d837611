// What the requests of a session share.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "graphs/empirical_data.h"
#include "requests/standard_errors.h"
#include "run/finished_run.h"
#include "spec/settings_location.h"
#include "state/analysis.h"
#include "support/host.h"
#include "support/work_file.h"

namespace tessaly {

/// A file that the session has written, and what it is.
struct SessionFile {
  std::string Label;
  std::string Path;
};

struct SessionState {
  Analysis& A;
  FinishedRun& Run;
  tessaly::Host& Host;
  SettingsEnvironment Environment;
  StandardErrors Errors;
  std::vector<SessionFile> Files;
  tessaly::TemporaryFiles TemporaryFiles;
  /// Collected when a request first needs it.
  std::optional<EmpiricalData> Empirical;
};

/// Puts the settings back as they were when it goes: what a request changes holds for that request.
class SettingsScope {
 public:
  explicit SettingsScope(Settings& settings) : settings_(settings), before_(settings) {}
  ~SettingsScope() { settings_ = std::move(before_); }
  SettingsScope(const SettingsScope&) = delete;
  SettingsScope& operator=(const SettingsScope&) = delete;

 private:
  Settings& settings_;
  Settings before_;
};

}  // namespace tessaly
