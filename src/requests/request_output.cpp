#include "requests/request_output.h"

#include <algorithm>
#include <utility>

#include "reports/report_console.h"
#include "spec/file_names.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/file_identity.h"
#include "support/output_file.h"
#include "support/work_file.h"

namespace tessaly {

namespace {

enum Program { kScreen, kTemporary, kExcel, kSpss, kR };

constexpr std::string_view kNotBuilt = " files cannot be made yet. Please use file=NAME with separator=tab, which ";

/// Why a file that only another program could make cannot be had; empty for others.
std::string OtherProgram(std::size_t program) {
  const std::string words(kNotBuilt);
  if (program == kExcel) return "Excel" + words + "a spreadsheet opens";
  if (program == kSpss) return "SPSS" + words + "SPSS imports";
  if (program == kR) return "R data" + words + "R reads with read.delim";
  return {};
}

bool NamesWorkbook(const std::string& fileName) {
  const std::string extension = ExtensionOf(fileName);
  return extension == ".xls" || extension == ".xlsx";
}

std::size_t ProgramOf(const std::string& fileName) {
  const std::string extension = ExtensionOf(fileName);
  if (NamesWorkbook(fileName)) return kExcel;
  if (extension == ".sav") return kSpss;
  if (extension == ".rdata" || extension == ".rda") return kR;
  return kScreen;
}

/// The screen while lines of a report go there: nothing else is said in between.
class QuietConsole : public Console {
 public:
  explicit QuietConsole(Console& screen) : screen_(screen) {}
  void ShowFatal(std::string_view text) override { screen_.ShowFatal(text); }

 private:
  Console& screen_;
};

/// The same for output files, whose warnings are not among their lines.
class WarningConsole : public QuietConsole {
 public:
  explicit WarningConsole(Console& screen) : QuietConsole(screen), screen_(screen) {}
  void ShowWarning(std::string_view text) override { screen_.ShowWarning(text); }

 private:
  Console& screen_;
};

}  // namespace

RequestOutput::RequestOutput(const RequestOptions& options, SessionState& session, Workbooks workbooks)
    : session_(session) {
  const auto program = options.Choice("to", {"screen", "temporary", "excel", "spss", "r"});
  if (program && options.Given("file")) throw Refusal{"file= and to= name two destinations. Please give one of them"};
  if (const auto name = options.Text("file")) {
    file_ = Replaced(*name, '\\', '/');
    if (file_.empty()) throw Refusal{"file= has no name. Please give the name of a file"};
    const bool asText = workbooks == Workbooks::AsText && NamesWorkbook(file_);
    const std::string refusal = asText ? std::string() : OtherProgram(ProgramOf(file_));
    if (!refusal.empty()) throw Refusal{refusal};
    kind_ = Kind::Permanent;
    RefuseTaken(file_);
  } else if (program) {
    if (const std::string refusal = OtherProgram(*program); !refusal.empty()) throw Refusal{refusal};
    if (*program == kTemporary) kind_ = Kind::Temporary;
  }
}

void RequestOutput::RefuseTaken(const std::string& name) const {
  for (const std::vector<std::string>* files : {&session_.Run.Files, &session_.Run.OtherInputs})
    if (std::any_of(files->begin(), files->end(), [&](const std::string& other) { return SameFile(name, other); }))
      throw Refusal{"\"" + name + "\" is a file of this analysis. Please give another name"};
}

std::string RequestOutput::Name(std::string_view prefix, std::string_view extension) const {
  if (kind_ != Kind::Temporary) return file_;
  return session_.TemporaryFiles.Add(TemporaryFolderOr(session_.A.Settings.WorkFolder), prefix, extension);
}

OutputDestination RequestOutput::Labels() const {
  return NamesWorkbook(file_) ? OutputDestination::Spreadsheet : OutputDestination::Plain;
}

void RequestOutput::Tables(std::string_view prefix, std::string_view label, const WriteTables& write) const {
  RunControl control(session_.Host.user);
  control.Phase = Phase::Reports;
  ReportWriter report(session_.A.Settings);
  const std::string name = Name(prefix, session_.A.Settings.AsciiOption == 'W' ? ".htm" : ".txt");
  QuietConsole quiet(session_.Host.console);
  ReportConsole console(ToScreen() ? quiet : session_.Host.console, control, report);
  // From the start, warnings belong to the tables.
  console.TakePendingWarnings();
  if (ToScreen()) {
    report.OpenScreen(session_.Host.console);
    return write(report, control, console);
  }
  Attempt(name, [&] {
    report.OpenReportFile(name);
    write(report, control, console);
    report.CloseReportFile();
  });
  Written(name, label);
}

void RequestOutput::Lines(std::string_view prefix, std::string_view label, const WriteLines& write,
                          std::string_view extension) const {
  LinesOf(Name(prefix, extension), label, write);
}

void RequestOutput::LinesOf(const std::string& name, std::string_view label, const WriteLines& write) const {
  if (ToScreen()) return WriteToScreen(write);
  RunControl control(session_.Host.user);
  control.Phase = Phase::Reports;
  Attempt(name, [&] {
    CheckWritable(name);
    TextOutput file(name, &control, OutputFile::Opening::WithFirstBlock);
    write(file, control, session_.Host.console);
    file.Close();
  });
  Written(name, label);
}

void RequestOutput::WriteToScreen(const WriteLines& write) const {
  RunControl control(session_.Host.user);
  control.Phase = Phase::Reports;
  TextOutput screen(session_.Host.console);
  WarningConsole console(session_.Host.console);
  write(screen, control, console);
}

void RequestOutput::Attempt(const std::string& name, const std::function<void()>& write) const {
  try {
    write();
  } catch (const Halt&) {
    session_.Host.console.ShowWarning("Failure writing output file: " + name);
    throw;
  }
}

void RequestOutput::Written(const std::string& name, std::string_view label) const {
  std::erase_if(session_.Files, [&](const SessionFile& file) { return file.Path == name; });
  session_.Files.push_back({std::string(label), name});
  session_.Host.console.ShowMessage(std::string(label) + " = " + name);
}

}  // namespace tessaly
