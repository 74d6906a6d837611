#include "run/run_analysis.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/data_files.h"
#include "data/data_reader.h"
#include "data/observation_store.h"
#include "estimate/fit_pass.h"
#include "estimate/joint_estimation.h"
#include "estimate/point_biserial.h"
#include "estimate/scale_order.h"
#include "interaction/inter_rater_agreement.h"
#include "model/response_kernel.h"
#include "reports/esubtotals_table.h"
#include "reports/facet_barcharts.h"
#include "reports/report_console.h"
#include "reports/report_writer.h"
#include "reports/table1_specification.h"
#include "reports/table2_data_summary.h"
#include "reports/table3_iterations.h"
#include "reports/table4_unexpected.h"
#include "reports/table5_data_fit.h"
#include "reports/table6_rulers.h"
#include "reports/table7_measurements.h"
#include "reports/table8_categories.h"
#include "reports/table_frame.h"
#include "run/bias_runs.h"
#include "run/data_includes.h"
#include "run/output_files.h"
#include "run/random_seed.h"
#include "run/recent_files.h"
#include "run/specification_file.h"
#include "spec/file_names.h"
#include "spec/input_stack.h"
#include "spec/settings_file.h"
#include "state/run_control.h"
#include "support/bytes.h"
#include "support/file_identity.h"
#include "support/number_text.h"
#include "support/work_file.h"

namespace tessaly {

namespace {

/// Number of the report file in messages.
constexpr std::string_view kReportPurpose = " 1";

std::string Quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

/// "h: m: s", each right-aligned in two places.
std::string HoursMinutesSeconds(double elapsed) {
  const auto seconds = static_cast<std::int64_t>(elapsed);
  const auto twoPlaces = [](std::int64_t value) { return RightJustified(BareText(value), 2); };
  return twoPlaces(seconds / 3600) + ":" + twoPlaces(seconds / 60 % 60) + ":" + twoPlaces(seconds % 60);
}

/// Takes one analysis through its phases, in the order in which things happen.
class AnalysisRun {
 public:
  AnalysisRun(Analysis& analysis, CommandLine commandLine, SettingsEnvironment environment, Host& shell)
      : analysis_(analysis),
        commandLine_(std::move(commandLine)),
        environment_(std::move(environment)),
        shell_(shell),
        control_(shell.user),
        report_(analysis.Settings),
        console_(shell.console, control_, report_),
        host_{shell.user, console_, shell.clock} {}

  Outcome Run() {
    try {
      ReadSpecifications();
      OpenReport();
      StartReport();
      ReadObservations();
      if (control_.FastForward) return Halted();
      CorrelatePointBiserially();
      if (control_.FastForward) return Halted();
      Estimate();
      WriteTables();
    } catch (const Halt& halt) {
      ReportFailure(halt);
      return Halted();
    } catch (const std::bad_alloc&) {
      ReportFailure(SystemFailure(ENOMEM));
      return Halted();
    } catch (const FatalError& error) {
      FatalFailure(error.Text);
    }
    return Finish(outputs_.AnyFailed() ? Outcome::Incomplete : Outcome::Finished);
  }

  /// What the run leaves, if it came that far.
  std::optional<FinishedRun> Finished() && {
    if (!unexpected_) return {};
    std::vector<std::string> files = Inputs();
    for (const std::string& name : outputs_.Names()) files.push_back(name);
    return FinishedRun{std::move(*store_),      std::move(*kernel_), dataFit_,     std::move(*unexpected_),
                       commandLine_.ExtraSpecs, std::move(files),    OtherInputs()};
  }

 private:
  void ReadSpecifications() {
    ReadInitialSettings();
    CheckTemporaryFolder();
    location_ = "Specification";
    SettleSpecificationFile(commandLine_, initial_.Xtraask, host_);
    folder_ = FolderOf(commandLine_.FileNames.front());
    analysis_.Settings.SpecFileName = commandLine_.FileNames.front();
    input_.emplace(analysis_.Input, console_, folder_);
    input_->PollWith(control_);
    input_->NoteSourcesIn(analysis_.Sources);
    input_->Open(analysis_.Settings.SpecFileName, "Specification");
    RememberSpecification();
    console_.ShowMessage("Processing specifications from " + Quoted(analysis_.Settings.SpecFileName));
    ReadSpecification(analysis_, commandLine_, host_, *input_);
    const Settings& settings = analysis_.Settings;
    if (settings.DataFileName.empty() && !settings.InlineData) {
      analysis_.Input = {};
      throw Halt{FailureCode::NoData, {}};
    }
    if (!MayAsk()) analysis_.Settings.QueryOption = false;
  }

  void ReadInitialSettings() {
    initial_ = ReadSettings(LocateSettings(environment_), analysis_.Settings, console_);
    console_.IterationBars = initial_.IterationBars;
    analysis_.Settings.WorkFolder = SettleTemporaryFolder(environment_, initial_, console_);
  }

  /// Those who come back find their files; a job that nobody watches leaves no trace of what it read.
  void RememberSpecification() const {
    const std::string store = LocateSettings(environment_).RecentFiles;
    if (store.empty() || !shell_.user.Present() || commandLine_.Batch) return;
    std::error_code error;
    const std::filesystem::path file = std::filesystem::absolute(analysis_.Settings.SpecFileName, error);
    if (error) return;
    AddRecentFile(store, file.parent_path().string() + "/");
    AddRecentFile(store, file.string());
  }

  /// Nothing is worse than an unusable folder after an hour: better to know at once.
  void CheckTemporaryFolder() const {
    const std::string folder = TemporaryFolderOr(analysis_.Settings.WorkFolder);
    try {
      const WorkFile test(folder);
    } catch (const Halt& halt) {
      throw Halt{halt.Code, "Temporary folder " + Quoted(folder) + " takes no files (" + halt.Argument +
                                "). Please set TMPDIR to a folder that does"};
    }
  }

  void OpenReport() {
    location_.clear();
    std::string& name = analysis_.Settings.OutputFileName;
    if (name.empty()) name = AskForReportName();
    name = Replaced(name, '\\', '/');
    RefuseOverwriting(name);
    console_.ShowMessage("Writing specifications to output file: " + Quoted(name));
    try {
      report_.OpenReportFile(name);
    } catch (const Halt& halt) {
      console_.ShowWarning("Failure opening output file: " + name);
      console_.ShowWarning("Tessaly: Error reported is: " + FailureText(halt, analysis_.Limits()) + " for" +
                           std::string(kReportPurpose));
      throw Halt{FailureCode::WorkFileProblem, {}};
    }
    outputs_.Prepare(AllInputs());
  }

  /// The name that the specification leads to, or one that the user prefers.
  std::string AskForReportName() const {
    const std::string derived = DerivedReportName(analysis_.Settings.SpecFileName, analysis_.Settings.AsciiOption);
    if (!initial_.Outputask || !MayAsk()) return derived;
    const auto answer =
        shell_.user.Ask("What is the Report Output file name? (Enter for \"" + std::string(derived) + "\") ");
    if (!answer) throw Halt{FailureCode::CancelledByUser, {}};
    const std::string_view name = TrimQuotes(*answer);
    return name.empty() ? derived : std::string(name);
  }

  bool MayAsk() const { return shell_.user.Present() && !commandLine_.Batch && !analysis_.Settings.BatchOption; }

  std::vector<std::string> DataFiles() const {
    std::vector<std::string> files;
    for (const std::string& data : DataFileNames(analysis_.Settings.DataFileName))
      files.push_back(FindInputFile(data, folder_));
    return files;
  }

  /// Files of the analysis: those that the data include are known once the data have been read.
  std::vector<std::string> Inputs() const {
    std::vector<std::string> inputs = input_->Opened();
    const std::vector<std::string> data = readData_.empty() ? DataFiles() : readData_;
    inputs.insert(inputs.end(), data.begin(), data.end());
    return inputs;
  }

  std::vector<std::string> OtherInputs() const {
    std::vector<std::string> inputs = LocateSettings(environment_).SettingsFiles;
    inputs.insert(inputs.end(), commandLine_.OtherInputs.begin(), commandLine_.OtherInputs.end());
    return inputs;
  }

  std::vector<std::string> AllInputs() const {
    std::vector<std::string> inputs = Inputs();
    for (std::string& input : OtherInputs()) inputs.push_back(std::move(input));
    return inputs;
  }

  void RefuseOverwriting(const std::string& name) {
    std::vector<std::string> inputs = AllInputs();
    // The report is opened before the data are read. Earlier reports are not looked for in them.
    if (HoldsOtherText(name)) {
      for (std::string& included : IncludedByData(DataFiles(), folder_)) inputs.push_back(std::move(included));
    }
    if (std::none_of(inputs.begin(), inputs.end(), [&](const std::string& input) { return SameFile(name, input); }))
      return;
    throw Halt{FailureCode::IncompatibleFile,
               "the report would overwrite " + Quoted(name) + ". Please name another report file in Output="};
  }

  void StartReport() {
    location_ = "Specification";
    MatchScalesToModels(analysis_.Models, analysis_.Scales, analysis_.Input, console_);
    report_.SelectTable(1);
    analysisStart_ = shell_.clock.Seconds();
    ProgramBanner(shell_.clock.RunDate(), report_);
    SpecificationTable(analysis_, report_, console_);
  }

  void ReadObservations() {
    location_.clear();
    console_.ShowMessage("Opening work files");
    const ElementLayout layout(analysis_.Facets, analysis_.Fields);
    if (layout.ElementRecordLength() == 0 && analysis_.Settings.LabelsBuild == 'N')
      throw Halt{FailureCode::NoActiveElements, {}};
    ObservationWriter writer(TemporaryFolderOr(analysis_.Settings.WorkFolder), layout);
    report_.SelectTable(2);
    StartDataSummaryTable(analysis_, report_, console_);
    inData_ = true;
    readData_ =
        ReadData(analysis_, analysis_.Settings.InlineData ? &*input_ : nullptr, folder_, writer, control_, host_);
    store_.emplace(std::move(writer).Seal());
    if (analysis_.Settings.PtBiserial == 'Y' || analysis_.Settings.PtBiserial == 'I') {
      pointBiserial_.emplace(analysis_, *store_, control_, console_);
      pointBiserial_->CountsForCorrelation();
    }
    analysis_.Input = {};
    outputs_.RefuseOverwriting(AllInputs());
    WriteDataSummary(analysis_, report_, console_);
    if (store_->ValidResponses() == 0) throw Halt{FailureCode::NoUsableData, NoDataReason()};
    SetNumberWidths();
  }

  std::string NoDataReason() const {
    const DataCounters& counters = analysis_.Counters;
    return counters.DataLines + counters.SkippedLines == 0 ? "There are no data lines in " + analysis_.CurrentDataFile
                                                           : std::string();
  }

  void SetNumberWidths() {
    for (Facet& facet : analysis_.Facets) facet.FacetNumberWidth = DisplayLength(BareText(facet.FacetHighestNumber));
  }

  void CorrelatePointBiserially() {
    if (!pointBiserial_) return;
    pointBiserial_->Correlate();
    pointBiserial_.reset();
  }

  void Estimate() {
    kernel_.emplace(analysis_.Scales, analysis_.Settings.HardwareExponent);
    report_.SelectTable(3);
    IterationTable table3(analysis_, report_, console_);
    JointEstimation(analysis_, *store_, *kernel_, control_, console_, table3).Run();
    inData_ = false;
    location_.clear();
    console_.ShowMessage("Calculating fit statistics");
    FitPass fit(analysis_, *store_, *kernel_, control_, console_);
    fit.Run();
    OrderScales(analysis_.Fields, analysis_.Elements, analysis_.Models, analysis_.Scales);
    CompareRaters();
    if (fit.CrossReference()) {
      report_.EndTables();
      WriteEsubtotals(*fit.CrossReference(), analysis_, report_);
    }
    dataFit_ = fit.Data();
    WriteDataFit();
    outputs_.WriteAnchors(commandLine_.ExtraSpecs, control_);
    console_.ShowMessage("Computing fit summary statistics..");
    fit.Finish();
    unexpected_.emplace(std::move(fit).Unexpected());
    outputs_.WriteResults(RandomSeed(analysis_.Settings, shell_.clock), *store_, *kernel_, control_);
  }

  void CompareRaters() {
    // A request that came during the fit pass had nothing to finish.
    control_.FastForward = false;
    analysis_.Agreement = InterRaterAgreement(analysis_, *store_, *kernel_, control_, console_);
    if (!control_.FastForward) return;
    control_.FastForward = false;
    console_.ShowMessage("*");
  }

  void WriteDataFit() {
    report_.SelectTable(4);
    if (report_.Wants(4) && WantsUnexpectedTables(analysis_.Settings))
      TableFrame(report_, analysis_.Settings, console_)
          .StartTable("Table 4. Unexpected Responses - appears after Table 8");
    report_.SelectTable(5);
    if (report_.Wants(5)) MeasurableDataSummary(dataFit_, analysis_.Settings, report_, console_);
  }

  void WriteTables() {
    if (analysis_.Settings.TablesOption == "N") return;
    location_ = "Specification";
    report_.SelectTable(6);
    if (report_.Wants(6)) WriteTable6();
    report_.SelectTable(7);
    if (report_.Wants(7) && !analysis_.Settings.ArrangeSpec.empty())
      MeasurementReport(analysis_.Settings.ArrangeSpec, analysis_, report_, control_, console_);
    report_.SelectTable(8);
    if (report_.Wants(8)) CategoryReport(analysis_.Settings.T8NBC, analysis_, *kernel_, report_, console_);
    report_.SelectTable(4);
    if (report_.Wants(4)) UnexpectedTables(*unexpected_, analysis_, report_, control_, console_);
    BiasRuns({analysis_, *store_, *kernel_, dataFit_, report_, control_, console_});
  }

  void WriteTable6() {
    const Settings& settings = analysis_.Settings;
    VerticalRulers(settings.VerticalSpec, settings.YardstickSpec, analysis_, *kernel_, report_, console_);
    SubsetRulers(settings.VerticalSpec, settings.YardstickSpec, analysis_, *kernel_, report_, console_);
    FacetSummaries(analysis_, report_, console_);
  }

  std::string Location() const { return inData_ ? "Data line in " + analysis_.CurrentDataFile : location_; }

  void ReportFailure(const Halt& halt) {
    // Why there are no more tables must stand in the report, whatever table was switched off.
    report_.EndTables();
    const InputLine line = std::exchange(analysis_.Input, {});
    console_.ShowMessage("");
    if (!Location().empty()) TellSource(line.LineNumber);
    for (const std::string& text : FailureReport(halt, analysis_.Limits(), Location(), line.LineNumber, line.LastLine))
      console_.ShowWarning(text);
  }

  /// Of a line in or behind an include file, whose number is not that in its file.
  void TellSource(std::int64_t lineNumber) {
    const auto& sources = analysis_.Sources;
    const auto after = std::find_if(sources.begin(), sources.end(),
                                    [&](const SourceChange& source) { return source.FirstLine > lineNumber; });
    if (after == sources.begin() || sources.size() < 2) return;
    const SourceChange& source = *std::prev(after);
    console_.ShowWarning("Line" + GeneralText(lineNumber) + " is line" +
                         GeneralText(source.OwnLine + lineNumber - source.FirstLine) + " of " + source.File);
  }

  [[noreturn]] void FatalFailure(const std::string& text) {
    shell_.console.ShowFatal("Tessaly Problem ...\n" + text);
    throw Stopped{StopReason::InternalFailure};
  }

  Outcome Halted() {
    analysis_.ConstraintWarning.clear();
    analysis_.SubsetWarning.clear();
    console_.ShowMessage("Execution halted");
    return Finish(Outcome::Halted);
  }

  Outcome Finish(Outcome outcome) {
    report_.EndTables();
    for (const std::string& warning : console_.TakePendingWarnings()) report_.WriteTableLine(warning);
    const std::string elapsed =
        "Analyzed in time of " +
        HoursMinutesSeconds(shell_.clock.Seconds() - analysisStart_.value_or(shell_.clock.Seconds()));
    console_.ShowMessage(elapsed);
    if (analysis_.Settings.WriteIterations) report_.WriteTableLine(elapsed);
    for (const std::string& warning : {analysis_.ConstraintWarning, analysis_.SubsetWarning}) {
      if (warning.empty()) continue;
      if (analysis_.Settings.BeepOn) console_.Beep();
      console_.ShowWarning(warning);
    }
    return CloseReport(outcome);
  }

  Outcome CloseReport(Outcome outcome) {
    if (!report_.IsOpen()) return outcome;
    const std::string& name = analysis_.Settings.OutputFileName;
    try {
      report_.CloseReportFile();
    } catch (const Halt& halt) {
      console_.ShowWarning("Failure writing output file: " + name);
      console_.ShowWarning(FailureLine(halt, analysis_.Limits(), 0));
      return Outcome::Halted;
    }
    std::error_code error;
    if (std::filesystem::file_size(name, error) == 0 && !error) {
      std::filesystem::remove(name, error);
      return outcome;
    }
    console_.ShowMessage("Output to " + name);
    return outcome;
  }

  Analysis& analysis_;
  CommandLine commandLine_;
  SettingsEnvironment environment_;
  Host& shell_;
  RunControl control_;
  ReportWriter report_;
  ReportConsole console_;
  Host host_;
  InitialSettings initial_;
  OutputFiles outputs_{analysis_, console_};
  std::optional<InputStack> input_;
  /// The files of `Data=` and what they include, once they have been read.
  std::vector<std::string> readData_;
  std::string folder_;
  std::string location_;
  bool inData_ = false;
  std::optional<double> analysisStart_;
  std::optional<ObservationStore> store_;
  std::optional<PointBiserial> pointBiserial_;
  std::optional<ResponseKernel> kernel_;
  DataFit dataFit_;
  std::optional<UnexpectedList> unexpected_;
};

}  // namespace

RunResult RunAnalysis(Analysis& analysis, CommandLine commandLine, Host& host, SettingsEnvironment environment) {
  AnalysisRun run(analysis, std::move(commandLine), std::move(environment), host);
  const Outcome outcome = run.Run();
  return {outcome, std::move(run).Finished()};
}

}  // namespace tessaly
