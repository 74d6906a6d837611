// The settings file: a user's own defaults, one a line.
#pragma once

#include <string>
#include <string_view>

#include "spec/settings_location.h"
#include "state/settings.h"
#include "support/host.h"

namespace tessaly {

/// Settings that no specification has. The member initialisers are the defaults.
struct InitialSettings {
  /// Whether output windows close with the program: 'A' ask, 'Y', 'N'.
  char Closeonexit = 'A';
  /// Path of the text editor, between double quotes if it holds a blank; empty for the system's.
  std::string EditorCommand;
  /// Folder for temporary files; empty for the system's.
  std::string TemporaryFolder;
  /// Whether empirical curves are computed: 'A' ask, 'Y', 'N'.
  char GraphEmpirical = 'A';
  /// The bars ">===<" of a running iteration.
  bool IterationBars = true;
  /// Ask for a report file name if the specification has none.
  bool Outputask = true;
  /// Ask for extra specifications.
  bool Xtraask = true;
};

/// Reads the settings files into the result and into the fields of `settings` that specifications have too. A file that
/// is not there says nothing. One that cannot be read and a line without a possible value are told as warnings and
/// change nothing, but bad `ScoreFields` select all fields.
InitialSettings ReadSettings(const SettingsLocation& location, Settings& settings, Console& console);

/// Rewrites the user's settings file. `settings` are the user's defaults, not those that a specification has changed.
/// Default `ResponseFields` are not among the lines and so are forgotten.
/// Throws `Halt` if the file cannot be written, which leaves it as it was.
void WriteAllSettings(const SettingsLocation& location, const InitialSettings& initial, const Settings& settings);

/// Adds one line such as "Closeonexit = Y" to the user's settings file, where it rules over earlier ones.
/// Throws `Halt` if the file cannot be read or written, which leaves it as it was.
void AppendSetting(const SettingsLocation& location, std::string_view line);

/// The folder for the temporary files of this run: that of the environment, the stored one, or the system's. A stored
/// one that takes no files is told and emptied for this run.
std::string SettleTemporaryFolder(const SettingsEnvironment& environment, InitialSettings& initial, Console& console);

}  // namespace tessaly
