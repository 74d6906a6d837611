#include "data/data_reader.h"

#include <cstdint>
#include <string_view>

#include "data/data_files.h"
#include "data/data_line.h"
#include "data/data_notes.h"
#include "data/element_resolver.h"
#include "data/invalid_lines.h"
#include "data/line_references.h"
#include "data/query_trace.h"
#include "data/response_reader.h"
#include "spec/clean_line.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

constexpr std::int32_t kLinesBetweenPolls = 100;

/// Marks on the progress line while data are read: none for data that take less than `kSecondsBetweenMarks`.
class ProgressMarks {
 public:
  explicit ProgressMarks(Host& host) : host_(host), last_(host.clock.Seconds()) {}

  void Tick() {
    const double now = host_.clock.Seconds();
    if (now - last_ <= kSecondsBetweenMarks) return;
    last_ = now;
    if (marks_ == 0) host_.console.ShowProgress(">", false);
    ++marks_;
    host_.console.ShowProgress(".", marks_ % kMarksInLine == 0);
  }
  void End() {
    if (marks_ > 0) host_.console.ShowProgress("<", true);
  }

 private:
  static constexpr double kSecondsBetweenMarks = 5;
  static constexpr std::int32_t kMarksInLine = 80;

  Host& host_;
  double last_;
  std::int32_t marks_ = 0;
};

/// What may be wrong with a line that has too few fields.
std::vector<std::string> SeparatorTrouble(std::string_view raw, std::int32_t fields) {
  if (fields > 1 || raw.find(';') == std::string_view::npos) return {};
  return {"  Semicolons begin comments: please separate fields with commas or TABs"};
}

class DataReader {
 public:
  DataReader(Analysis& analysis, ObservationWriter& writer, RunControl& control, Host& host)
      : analysis_(analysis),
        control_(control),
        console_(host.console),
        columns_(analysis.Fields.DataFacetCount()),
        progress_(host),
        line_(analysis.Fields.Columns, analysis.Settings.ReplicationChar),
        resolver_(analysis.Facets, analysis.Fields, analysis.Elements, analysis.Settings.NullElement, host.console),
        references_(analysis.Fields, analysis.Elements, resolver_, host.console),
        notes_(analysis, host.console),
        refusal_(analysis, host.console),
        trace_(analysis, host),
        responses_(analysis, writer, notes_, trace_) {}

  void ReadFile(InputStack& input);
  void Finish();

 private:
  bool ReadLine(std::string_view raw);
  bool ResolveReferences(std::string_view raw);
  void StartDataLine();
  void CheckResponseCount();
  void ReadResponses();
  void Poll();

  Analysis& analysis_;
  RunControl& control_;
  Console& console_;
  const std::int32_t columns_;
  ProgressMarks progress_;
  DataLine line_;
  ElementResolver resolver_;
  LineReferences references_;
  DataNotes notes_;
  LineRefusal refusal_;
  QueryTrace trace_;
  ResponseReader responses_;
  std::int64_t fileLines_ = 0;
  std::int32_t linesToPoll_ = kLinesBetweenPolls;
  bool firstDataShown_ = false;
  std::int64_t excessLines_ = 0;
};

void DataReader::ReadFile(InputStack& input) {
  fileLines_ = 0;
  while (!control_.FastForward) {
    const std::optional<std::string_view> raw = input.NextRawLine();
    if (!raw) break;
    ++fileLines_;
    if (--linesToPoll_ == 0) Poll();
    if (!ReadLine(*raw)) break;
  }
  const std::string total = "Total lines in data file =" + GeneralText(fileLines_);
  console_.ShowMessage(total);
  console_.ReportLine(total);
}

void DataReader::Poll() {
  linesToPoll_ = kLinesBetweenPolls;
  control_.Poll();
  progress_.Tick();
}

void DataReader::Finish() {
  progress_.End();
  if (excessLines_ > 1)
    console_.ShowWarning("Excess responses in" + GeneralText(excessLines_) +
                         " data lines: is a column missing in Facets= or Entered=, or a decimal comma in the data?");
  analysis_.Unspecified = notes_.Unspecified().Sorted();
  analysis_.EmptyFacet = resolver_.EmptyFacet();
}

/// Reads one line; false for the line that ends a file.
bool DataReader::ReadLine(std::string_view raw) {
  DataCounters& counters = analysis_.Counters;
  line_.Split(raw, fileLines_, counters.DataLines);
  if (!line_.Plain() && HasVisibleComment(raw)) console_.ReportLine(raw);
  if (line_.Blank()) {
    ++counters.BlankLines;
    trace_.Show(QueryState::BlankLine);
    return true;
  }
  if (line_.EndsData()) return false;
  if (!ResolveReferences(raw)) return true;
  CheckResponseCount();
  if (!firstDataShown_) {
    firstDataShown_ = true;
    console_.ShowMessage(" Processed as: " + QuotedLine(ProcessedLine(line_, references_, analysis_)));
  }
  ReadResponses();
  return true;
}

/// Finds the elements of the line; false for a line that is skipped, of which nothing is noted.
bool DataReader::ResolveReferences(std::string_view raw) {
  if (line_.FieldCount() <= columns_) {
    refusal_.Refuse(FailureCode::TooFewFields, SeparatorTrouble(raw, line_.FieldCount()));
    return false;
  }
  // A line that halts the run may be the first active one; a line that is skipped is never active.
  if (!refusal_.Skips()) StartDataLine();
  references_.Resolve(line_);
  if (refusal_.Skips()) {
    if (const PositionNumber position = notes_.WithoutReference(references_); position.value > 0) {
      refusal_.Refuse(FailureCode::InvalidElementReference, notes_.ReferenceTrouble(line_, position, resolver_));
      return false;
    }
    StartDataLine();
  }
  if (!references_.AllKnown() || references_.RangePosition().value != 0)
    notes_.NoteReferences(line_, references_, resolver_, line_.FieldCount() - columns_);
  return true;
}

void DataReader::StartDataLine() {
  ++analysis_.Counters.DataLines;
  if (line_.Replication() == 0) trace_.Show(QueryState::NoReplication);
  if (!firstDataShown_) console_.ShowMessage("First active data line is: " + QuotedLine(analysis_.Input.LastLine));
}

void DataReader::CheckResponseCount() {
  const std::int64_t needed = columns_ + references_.RangeLength();
  const std::int64_t excess = line_.FieldCount() - needed;
  if (excess < 0) throw Halt{FailureCode::RangeDeficit, GeneralText(-excess)};
  if (excess == 0) return;
  std::int64_t real = excess;
  while (real > 0 && line_.Text(static_cast<std::int32_t>(needed + real)).empty()) --real;
  if (real == 0 || ++excessLines_ > 1) return;
  console_.ShowWarning("Data line in " + analysis_.CurrentDataFile +
                       " line:" + GeneralText(analysis_.Input.LineNumber));
  console_.ShowWarning(QuotedLine(analysis_.Input.LastLine));
  console_.ShowWarning("Warning (18)!" + GeneralText(real) + " excess responses ignored");
}

void DataReader::ReadResponses() {
  for (std::int32_t response = 1; response <= references_.RangeLength(); ++response) {
    if (response > 1) {
      references_.NextOfRange(line_);
      if (!references_.AllKnown()) notes_.NoteReferences(line_, references_, resolver_, 0);
    }
    responses_.Read(line_, references_, line_.Field(columns_ + response));
  }
}

}  // namespace

std::vector<std::string> ReadData(Analysis& analysis, InputStack* inlineInput, const std::string& specFolder,
                                  ObservationWriter& writer, RunControl& control, Host& host) {
  DataReader reader(analysis, writer, control, host);
  const auto announce = [&](const std::string& name) {
    host.console.ShowMessage("Assigning models to Data= \"" + name + "\"");
  };
  std::vector<std::string> opened;
  try {
    if (inlineInput != nullptr) {
      analysis.CurrentDataFile = "(" + analysis.Settings.SpecFileName + ")";
      announce(analysis.Settings.SpecFileName);
      reader.ReadFile(*inlineInput);
    } else {
      for (const std::string& name : DataFileNames(analysis.Settings.DataFileName)) {
        if (control.FastForward) break;
        analysis.CurrentDataFile = name;
        announce(name);
        analysis.Input = {};
        InputStack input(analysis.Input, host.console, specFolder);
        input.PollWith(control);
        input.NoteSourcesIn(analysis.Sources);
        input.Open(FindDataFile(name, specFolder, host.console), "Data");
        reader.ReadFile(input);
        opened.insert(opened.end(), input.Opened().begin(), input.Opened().end());
      }
    }
  } catch (const Halt&) {
    // The message of the failure quotes the line, which may be as long as the file.
    analysis.Input.LastLine = QuotedLine(analysis.Input.LastLine);
    throw;
  }
  reader.Finish();
  return opened;
}

}  // namespace tessaly
