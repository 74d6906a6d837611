// Any bytes as a specification: it is read into the tables of an analysis, or refused with a failure. What it set must
// be writable as settings and as Table 1.
#include "fuzz/harness.h"
#include "output/settings_lines.h"
#include "reports/report_console.h"
#include "reports/report_writer.h"
#include "reports/table1_specification.h"
#include "spec/input_stack.h"
#include "spec/read_specification.h"
#include "state/run_control.h"
#include "support/failure.h"

using namespace tessaly;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::OwnFolder folder;
  folder.Unpack(data, size);
  fuzz::SilentHost host;
  Analysis analysis;
  InputStack input(analysis.Input, host.Silence, "");
  try {
    input.Open("spec.txt", "Specification");
    ReadSpecification(analysis, {}, host.Host, input);
    MatchScalesToModels(analysis.Models, analysis.Scales, analysis.Input, host.Silence);
    RunControl control(host.Nobody);
    ReportWriter report(analysis.Settings);
    ReportConsole console(host.Silence, control, report);
    report.OpenReportFile("report.txt");
    SpecificationTable(analysis, report, console);
  } catch (const Stopped&) {
  } catch (const FatalError& error) {
    fuzz::RequireCausedByInput(error.Text);
  } catch (const Halt& halt) {
    FailureReport(halt, analysis.Limits(), "Specification", analysis.Input.LineNumber, analysis.Input.LastLine);
  }
  SettingsLines(analysis);
  return 0;
}
