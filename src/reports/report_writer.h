// The path of every line into the report file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "reports/box_line.h"
#include "state/run_control.h"
#include "state/settings.h"
#include "support/host.h"
#include "support/output_file.h"

namespace tessaly {

/// Forms of the report file.
enum class ReportForm : char { Text = 'Y', Drawing = 'N', Webpage = 'W' };

/// The name of the report of a specification file: its name up to its last point, then "out." and the extension.
std::string DerivedReportName(std::string_view specFileName, char asciiOption);

/// The report file. Lines come with neutral box codes and leave in the form of the file.
class ReportWriter {
 public:
  explicit ReportWriter(const Settings& settings) : settings_(settings) {}

  /// Opens `path`; its name and `ASCII=` decide the form. Throws `Halt` with the system's error.
  void OpenReportFile(const std::string& path);
  /// Sends the lines to `screen` as text, in place of a file.
  void OpenScreen(Console& screen);
  /// Polls the user every so many lines, for tables may have a million rows, and before it waits for a pipe.
  void PollWith(RunControl& control) { control_ = &control; }
  bool IsOpen() const { return file_.has_value(); }
  ReportForm Form() const { return form_; }
  /// Throws `Halt` with the system's error if the report could not be written in full.
  void CloseReportFile();

  /// The only way a line leaves for the report. Does nothing while the present table is not wanted.
  void WriteTableLine(std::string_view line);
  /// Turns writing on or off as `Tables=` wants table `number`.
  void SelectTable(int number);
  /// Turns writing on for what belongs to no table.
  void EndTables() { reportOn_ = true; }
  /// Whether `Tables=` wants table `number`.
  bool Wants(int number) const;

 private:
  std::string Rendered(std::string_view line);

  const Settings& settings_;
  std::optional<OutputFile> file_;
  Console* screen_ = nullptr;
  RunControl* control_ = nullptr;
  std::uint32_t lines_ = 0;
  ReportForm form_ = ReportForm::Text;
  bool reportOn_ = true;
  bool webpageStarted_ = false;
};

}  // namespace tessaly
