#include "spec/read_specification.h"

#include "spec/delements.h"
#include "spec/dvalues.h"
#include "spec/entered.h"
#include "spec/file_keywords.h"
#include "spec/keywords.h"
#include "spec/load_labels.h"
#include "spec/load_models.h"
#include "spec/spec_context.h"
#include "support/bytes.h"

namespace tessaly {
namespace {

void TakeFileNames(SpecContext& context, const std::array<std::string, 5>& names) {
  Settings& settings = context.Analysis.Settings;
  if (settings.SpecFileName.empty()) settings.SpecFileName = names[0];
  if (!names[1].empty()) {
    settings.OutputFileName = names[1];
    MarkAsSeen(context, *FindKeyword("Output="));
  }
  TakeIfNamed(settings.AnchorFileName, names[2]);
  TakeIfNamed(settings.ResidualFileName, names[3]);
  TakeIfNamed(settings.GraphFileName, names[4]);
}

void ApplyExtraSpecs(SpecContext& context, const std::vector<std::string>& extraSpecs) {
  if (extraSpecs.empty()) return;
  context.Host.console.ShowMessage("Extra specifications: " + Joined(extraSpecs, " "));
  const InputLine beforeFile = context.Analysis.Input;
  context.ExtraSpecPhase = true;
  for (const std::string& extraSpec : extraSpecs) {
    context.Analysis.Input = {0, extraSpec};
    if (extraSpec.find('=') == std::string::npos) throw Halt{FailureCode::SpecificationExpected, {}};
    ApplyKeyword(context, SplitSpecLine(extraSpec));
  }
  context.ExtraSpecPhase = false;
  context.Analysis.Input = beforeFile;
}

void ApplyFile(SpecContext& context) {
  while (!context.Analysis.Settings.InlineData) {
    const std::optional<std::string_view> line = context.Reader.ReadLine();
    if (!line) return;
    ApplyKeyword(context, SplitSpecLine(*line));
  }
}

/// Whatever is missing has no line of its own.
[[noreturn]] void RefuseMissing(SpecContext& context, FailureCode failure) {
  context.Analysis.Input = {};
  throw Halt{failure, {}};
}

void RequireFacetsAndLabels(SpecContext& context) {
  const std::vector<StoredLine>& labels = context.Waiting.Labels;
  if (context.Analysis.FacetCount() == 0) {
    if (labels.empty()) RefuseMissing(context, FailureCode::FacetsFirst);
    context.Analysis.Input = {labels.front().LineNumber, labels.front().Text};
    context.RequireFacets();
  }
  if (labels.empty()) RefuseMissing(context, FailureCode::NoElementLabels);
}

void BuildTables(SpecContext& context) {
  Analysis& analysis = context.Analysis;
  Console& console = context.Host.console;
  RequireFacetsAndLabels(context);
  if (!context.Waiting.EnteredGiven) SetIdentityFields(analysis.FacetCount(), analysis.Fields);
  LoadModels(context.Waiting.Models, analysis.Fields, analysis.Models, analysis.Input, console);
  LoadLabels(context.Waiting.Labels, analysis, console);
  ParseDelements(analysis.Settings.DelementsOption, analysis.FacetCount(), analysis.Fields, console);
  ApplyDvalues(context.Waiting.Dvalues, analysis.Fields, analysis.Input);
}

}  // namespace

void ReadSpecification(Analysis& analysis, const CommandLine& commandLine, Host& host, InputStack& input) {
  SpecReader reader(input, analysis.SpecComments);
  SpecContext context{analysis, host, reader};
  analysis.SpecComments.insert(analysis.SpecComments.end(), commandLine.Comments.begin(), commandLine.Comments.end());
  TakeFileNames(context, commandLine.FileNames);
  ApplyExtraSpecs(context, commandLine.ExtraSpecs);
  ApplyFile(context);
  BuildTables(context);
}

}  // namespace tessaly
