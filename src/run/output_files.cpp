#include "run/output_files.h"

#include <set>

#include "output/anchor_file.h"
#include "output/graph_file.h"
#include "output/residual_file.h"
#include "output/score_file.h"
#include "output/simulated_data.h"
#include "output/text_output.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/file_identity.h"

namespace tessaly {

void OutputFiles::Prepare(const std::vector<std::string>& inputs) {
  Settings& s = analysis_.Settings;
  for (std::string* const name :
       {&s.AnchorFileName, &s.ResidualFileName, &s.GraphFileName, &s.ScoreFileName, &s.SimulatedFileName})
    *name = Replaced(*name, '\\', '/');
  if (!s.ResidualFileName.empty() && s.ResidualFileName.find('.') == std::string::npos) s.ResidualFileName += ".txt";
  RefuseOverwriting(inputs);
  Try(s.ResidualFileName, "Opening residual output file: ", "residual");
  Try(s.AnchorFileName, "Opening anchor output file: ", "anchor");
  Try(s.GraphFileName, "Validating graphing output file=", "graph");
  Try(s.SimulatedFileName, "Validating simulated data file=", "simulated data");
}

std::vector<std::string> OutputFiles::Names() const {
  const Settings& s = analysis_.Settings;
  std::vector<std::string> names = {s.OutputFileName, s.AnchorFileName, s.ResidualFileName, s.GraphFileName,
                                    s.SimulatedFileName};
  if (const std::string scores = ScoreFilePath(s); !scores.empty())
    for (const FacetNumber facet : analysis_.Facets.all()) names.push_back(ScoreFileName(scores, facet));
  std::erase(names, "");
  return names;
}

void OutputFiles::RefuseOverwriting(const std::vector<std::string>& inputs) const {
  std::set<std::string> taken;
  for (const std::string& name : inputs) taken.insert(FileIdentity(name));
  for (const std::string& name : Names()) {
    const std::string identity = FileIdentity(name);
    if (!identity.empty() && !taken.insert(identity).second)
      throw Halt{FailureCode::IncompatibleFile,
                 "an output file would overwrite \"" + name + "\". Please give each file a name of its own"};
  }
}

void OutputFiles::Try(std::string& name, std::string_view message, std::string_view what) {
  if (name.empty()) return;
  console_.ShowMessage(std::string(message) + name);
  try {
    CheckWritable(name);
  } catch (const Halt& halt) {
    TellFailure("opening", what, name, halt);
    name.clear();
  }
}

template <class Write>
void OutputFiles::Attempt(const std::string& name, std::string_view what, RunControl& control, Write write) {
  if (name.empty()) return;
  try {
    TextOutput file(name, &control);
    write(file);
    file.Close();
  } catch (const Halt& halt) {
    TellFailure("writing", what, name, halt);
  }
}

void OutputFiles::TellFailure(std::string_view doing, std::string_view what, const std::string& name,
                              const Halt& halt) {
  anyFailed_ = true;
  console_.ShowWarning("Failure " + std::string(doing) + " " + std::string(what) + " output file: " + name);
  console_.ShowWarning(FailureLine(halt, analysis_.Limits(), 0));
}

void OutputFiles::WriteAnchors(const std::vector<std::string>& extraSpecs, RunControl& control) {
  const std::string& name = analysis_.Settings.AnchorFileName;
  if (name.empty()) return;
  try {
    TextOutput file(name, &control);
    AnchorRequest request;
    request.ExtraSpecs = extraSpecs;
    WriteAnchorFile(request, analysis_, console_, file);
    file.Close();
  } catch (const Halt&) {
    console_.ShowWarning("Failure writing anchor output file: " + name);
    throw;
  }
}

void OutputFiles::WriteResults(std::int32_t seed, ObservationStore& store, ResponseKernel& kernel,
                               RunControl& control) {
  const Settings& s = analysis_.Settings;
  const std::string scores = ScoreFilePath(s);
  if (!scores.empty() && !WriteAllScoreFiles(scores, analysis_, control, console_)) anyFailed_ = true;
  if (!s.GraphFileName.empty()) console_.ShowMessage("Writing graph output file ...");
  Attempt(s.GraphFileName, "graph", control,
          [&](TextOutput& file) { WriteGraphFile(kGraphDecimals, analysis_, kernel, file); });
  control.FastForward = false;
  Attempt(s.ResidualFileName, "residual", control, [&](TextOutput& file) {
    WriteResidualFile(ResidualRows::Used, OutputDestination::Plain, analysis_, store, kernel, control, console_, file);
  });
  control.FastForward = false;
  if (!s.SimulatedFileName.empty()) console_.ShowMessage("Writing simulated data file ...");
  Attempt(s.SimulatedFileName, "simulated data", control,
          [&](TextOutput& file) { WriteSimulatedData(true, seed, analysis_, store, kernel, control, console_, file); });
  control.FastForward = false;
}

}  // namespace tessaly
