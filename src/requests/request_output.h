// Where the lines of a request go: a file that stays, a temporary one, or the screen.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "output/label_field.h"
#include "output/text_output.h"
#include "reports/report_writer.h"
#include "requests/request_options.h"
#include "requests/session_state.h"
#include "state/run_control.h"

namespace tessaly {

/// The destination that the options `file=` and `to=` name; the screen if neither is given.
class RequestOutput {
 public:
  /// Whether a file may be named like a workbook: then it is delimited text whose labels spreadsheets take as text.
  enum class Workbooks { Refused, AsText };

  /// Throws `Refusal` for a destination that cannot be had: spreadsheets and statistics programs, and names of files
  /// that the run has read or written.
  RequestOutput(const RequestOptions& options, SessionState& session, Workbooks workbooks = Workbooks::Refused);

  using WriteTables = std::function<void(ReportWriter&, RunControl&, Console&)>;
  using WriteLines = std::function<void(TextOutput&, RunControl&, Console&)>;

  /// Opens the destination for tables, in the form that its name and `ASCII=` ask for, and hands it to `write`.
  /// `prefix` begins the name of a temporary file; `label` tells what a file is. Throws `Halt` if it cannot be written:
  /// a file stays as far as it got.
  void Tables(std::string_view prefix, std::string_view label, const WriteTables& write) const;
  /// The same for the lines of an output file; `extension` is that of a temporary one.
  void Lines(std::string_view prefix, std::string_view label, const WriteLines& write,
             std::string_view extension = ".txt") const;

  bool ToScreen() const { return kind_ == Kind::Screen; }
  bool Temporary() const { return kind_ == Kind::Temporary; }
  /// The file's name, empty for the screen. Each call makes a new temporary file, and each of several files of one
  /// request has to be made so: a name that was not taken a moment ago may by now be a link to somebody's file.
  std::string Name(std::string_view prefix, std::string_view extension) const;
  /// Lines of one file named `name`.
  void LinesOf(const std::string& name, std::string_view label, const WriteLines& write) const;
  /// What the name of the file asks of labels.
  OutputDestination Labels() const;
  /// Throws `Refusal` if `name` must not be overwritten.
  void RefuseTaken(const std::string& name) const;
  /// Carries out `write`, and names the file `name` if it throws `Halt`.
  void Attempt(const std::string& name, const std::function<void()>& write) const;
  /// Tells that the file `name` is there, and lists it among those of the session.
  void Written(const std::string& name, std::string_view label) const;

 private:
  enum class Kind { Permanent, Temporary, Screen };

  void WriteToScreen(const WriteLines& write) const;

  SessionState& session_;
  Kind kind_ = Kind::Screen;
  std::string file_;
};

}  // namespace tessaly
