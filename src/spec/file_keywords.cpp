#include "spec/file_keywords.h"

#include <cmath>

#include "spec/named_marks.h"
#include "spec/setting_values.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

void SetCsvDelimiter(SpecContext& context, std::string_view word) {
  context.Analysis.Settings.CsvDelimiter = DelimiterOf(word);
}

void KeepOrTake(std::string& file, std::string_view name) {
  if (file.empty()) file = name;
}

}  // namespace

void TakeIfNamed(std::string& file, std::string_view name) {
  if (!name.empty()) file = name;
}

void ReadData(SpecContext& context, const SplitLine& line) {
  Settings& settings = context.Analysis.Settings;
  const std::string_view name = line.Value(1);
  if (!name.empty()) {
    KeepOrTake(settings.DataFileName, name);
  } else if (context.ExtraSpecPhase) {
    return;
  } else if (settings.DataFileName.empty()) {
    settings.InlineData = true;
  } else {
    context.Reader.SkipRest();
  }
}

void ReadOutput(SpecContext& context, const SplitLine& line) {
  Settings& settings = context.Analysis.Settings;
  TakeIfNamed(settings.OutputFileName, line.Value(1));
  TakeIfNamed(settings.AnchorFileName, line.Value(2));
  TakeIfNamed(settings.ResidualFileName, line.Value(3));
  TakeIfNamed(settings.GraphFileName, line.Value(4));
}

void ReadAnchorfile(SpecContext& context, const SplitLine& line) {
  KeepOrTake(context.Analysis.Settings.AnchorFileName, line.Value(1));
}

void ReadGraphfile(SpecContext& context, const SplitLine& line) {
  KeepOrTake(context.Analysis.Settings.GraphFileName, line.Value(1));
  if (!line.Value(2).empty()) SetCsvDelimiter(context, line.Value(2));
}

void ReadResidualfile(SpecContext& context, const SplitLine& line) {
  KeepOrTake(context.Analysis.Settings.ResidualFileName, line.Value(1));
}

void ReadSimulated(SpecContext& context, const SplitLine& line) {
  KeepOrTake(context.Analysis.Settings.SimulatedFileName, line.Value(1));
}

void ReadScorefile(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.ScoreFileName = line.Value(1);
  if (!line.Value(2).empty()) SetCsvDelimiter(context, line.Value(2));
}

void ReadSeed(SpecContext& context, const SplitLine& line) {
  if (line.Value(1).empty()) return context.Analysis.Settings.Seed.reset();
  const double seed = IsNumeric(line.Value(1)) ? LeadingNumber(line.Value(1)) : -1;
  if (seed < 0 || seed > kHighestSeed || seed != std::trunc(seed)) {
    context.Host.console.ShowWarning("Seed= takes a whole number from 0 to" + GeneralText(kHighestSeed));
    throw Halt{FailureCode::NumberInvalid, {}};
  }
  context.Analysis.Settings.Seed = static_cast<std::int32_t>(seed);
}

void ReadCsv(SpecContext& context, const SplitLine& line) {
  SetCsvDelimiter(context, line.Value(1));
}

}  // namespace tessaly
