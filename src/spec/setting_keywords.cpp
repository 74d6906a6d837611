#include "spec/setting_keywords.h"

#include <algorithm>
#include <cmath>

#include "spec/facet_keywords.h"
#include "spec/named_marks.h"
#include "spec/setting_values.h"
#include "support/bytes.h"
#include "support/expression.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Above this a sum of exponentials no longer fits a single, nor does the reciprocal of the largest one.
constexpr float kMostHardwareExponent = 83;
/// More decimals than any single has digits.
constexpr std::int32_t kMostDecimals = 9;
/// Tables that `Tables=` can switch.
constexpr std::size_t kTableSwitches = 14;

void RequireNothingScaled(const SpecContext& context) {
  if (!context.Waiting.Labels.empty() || !context.Analysis.Models.Definitions.empty())
    throw Halt{FailureCode::UmeanTooLate, {}};
}

void TakeScale(SpecContext& context, std::string_view text) {
  const float scale = EvaluateExpression(text);
  if (scale != 0) context.Analysis.Settings.Uscale = scale;
}

void TakeDecimals(SpecContext& context, std::string_view text) {
  context.Analysis.Settings.Udecimals = std::clamp(WholeValue(text), 0, kMostDecimals);
}

bool OneOf(char letter, std::string_view letters) {
  return letters.find(letter) != std::string_view::npos;
}

}  // namespace

void ReadAscii(SpecContext& context, const SplitLine& line) {
  const char letter = FirstLetter(line.Value(1));
  context.Analysis.Settings.AsciiOption = OneOf(letter, "NW") ? letter : 'Y';
}

void ReadBarcharts(SpecContext& context, const SplitLine& line) {
  const char letter = FirstLetter(line.Value(1));
  context.Analysis.Settings.BarchartsOption = letter == 'A' ? 2 : letter == 'Y' ? 1 : 0;
}

void ReadBias(SpecContext& context, const SplitLine& line) {
  const char letter = FirstLetter(line.Value(1));
  context.Analysis.Settings.BiasDirection = OneOf(letter, "+PALE")   ? BiasDirection::Plus
                                            : OneOf(letter, "-NDMS") ? BiasDirection::Minus
                                                                     : BiasDirection::Omit;
}

void ReadConvergence(SpecContext& context, const SplitLine& line) {
  Settings& settings = context.Analysis.Settings;
  float* const criteria[] = {&settings.ConvergenceScore, &settings.ConvergenceLogit, &settings.ConvergenceCategoryScore,
                             &settings.ConvergenceCategoryLogit};
  std::size_t number = 0;
  for (float* const criterion : criteria)
    if (const std::string_view text = line.Value(++number); !text.empty()) *criterion = AbsoluteValue(text);
}

void ReadDelements(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.DelementsOption = UpperAscii(Joined(line.Values, ","));
}

void ReadFair(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.FairOption = FirstLetter(line.Value(1)) == 'Z' ? 'Z' : 'M';
}

void ReadHardware(SpecContext& context, const SplitLine& line) {
  Settings& settings = context.Analysis.Settings;
  const float value = EvaluateExpression(line.Value(1));
  if (value > 0) settings.HardwareExponent = std::min(value, kMostHardwareExponent);
  settings.SmallestNumber = float(std::exp(-double(settings.HardwareExponent)));
  context.Host.console.ShowMessage("Hardware maximum exponent =" + GeneralText(settings.HardwareExponent));
}

void ReadInterRater(SpecContext& context, const SplitLine& line) {
  std::vector<std::int32_t>& facets = context.Analysis.Settings.InterRaterFacets;
  facets.clear();
  const std::int32_t raters = AbsoluteWholeValue(line.Value(1));
  if (!line.Value(1).empty() && FirstLetter(line.Value(1)) != 'N' && !IsNumberOf(raters, line.Value(1)))
    context.Host.console.ShowWarning("Inter-rater= takes facet numbers: " + QuotedLine(line.Value(1)) + " is none");
  if (raters == 0) return;
  facets.push_back(raters);
  for (std::size_t number = 2; number <= line.Values.size(); ++number) {
    const std::int32_t facet = AbsoluteWholeValue(line.Value(number));
    if (facet > 0 && facet <= kMostFacets && std::find(facets.begin() + 1, facets.end(), facet) == facets.end())
      facets.push_back(facet);
  }
}

void ReadInvalidLines(SpecContext& context, const SplitLine& line) {
  const char letter = FirstLetter(line.Value(1));
  context.Analysis.Settings.InvalidLinesOption = OneOf(letter, "S1")   ? InvalidLines::Single
                                                 : OneOf(letter, "R2") ? InvalidLines::Repeated
                                                                       : InvalidLines::Halt;
}

void ReadMissing(SpecContext& context, const SplitLine& line) {
  for (const std::string& code : line.Values)
    if (!code.empty()) context.Analysis.Settings.MissingCodes.push_back(code);
}

void ReadNewton(SpecContext& context, const SplitLine& line) {
  const std::string_view text = line.Value(1);
  context.Analysis.Settings.NewtonStep = IsYes(text) ? 0.5F : AbsoluteValue(text);
}

void ReadNull(SpecContext& context, const SplitLine& line) {
  const double number = std::round(ExactValue(line.Value(1)));
  if (number < -1 || number > kHighestElementNumber) throw Halt{FailureCode::NullOutOfRange, {}};
  context.Analysis.Settings.NullElement = RoundToLong(number);
}

void ReadPtBiserial(SpecContext& context, const SplitLine& line) {
  const char letter = FirstLetter(line.Value(1));
  context.Analysis.Settings.PtBiserial = OneOf(letter, "YBPO") ? 'Y'
                                         : OneOf(letter, "IA") ? 'I'
                                         : letter == 'M'       ? 'M'
                                                               : 'N';
}

void ReadQuoteMark(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.QuoteMark = QuoteMarkOf(line.Value(1));
}

void ReadReplication(SpecContext& context, const SplitLine& line) {
  const std::string_view text = line.Value(1);
  context.Analysis.Settings.ReplicationChar = text.empty() ? "R" : UpperAscii(text);
}

void ReadStandardErrors(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.RealSE = OneOf(FirstLetter(line.Value(1)), "ER");
}

void ReadSubsets(SpecContext& context, const SplitLine& line) {
  const char letter = FirstLetter(line.Value(1));
  context.Analysis.Settings.SubsetDetection = letter == 'Y'   ? SubsetReport::Detect
                                              : letter == 'R' ? SubsetReport::Report
                                              : letter == 'L' ? SubsetReport::List
                                                              : SubsetReport::Off;
  if (context.Analysis.Settings.SubsetDetection == SubsetReport::Off)
    context.Analysis.SubsetWarning = "Warning (2)! Subset checking bypassed";
}

void ReadT3onscreen(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.T3onscreen = FirstLetter(line.Value(1)) != 'N';
}

void ReadT8(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.T8NBC = UpperAscii(Joined(line.Values, ","));
}

void ReadTables(SpecContext& context, const SplitLine& line) {
  std::string& tables = context.Analysis.Settings.TablesOption;
  const std::string_view text = line.Value(1);
  if (OneOf(FirstLetter(text), "01")) {
    tables = text;
    tables.resize(kTableSwitches, '0');
  } else {
    tables = FirstLetter(text) == 'N' ? "N" : "Y";
  }
}

void ReadTitle(SpecContext& context, const SplitLine& line) {
  std::vector<std::string> parts;
  for (const std::string& value : line.Values) parts.emplace_back(TrimQuotes(value));
  Settings& settings = context.Analysis.Settings;
  settings.GivenTitle = Joined(parts, ", ");
  settings.Title = settings.GivenTitle;
  if (!settings.Title.empty()) settings.Title += ' ' + context.Host.clock.RunDate();
}

void ReadUdecimals(SpecContext& context, const SplitLine& line) {
  TakeDecimals(context, line.Value(1));
}

void ReadUmean(SpecContext& context, const SplitLine& line) {
  RequireNothingScaled(context);
  context.Analysis.Settings.Umean = EvaluateExpression(line.Value(1));
  TakeScale(context, line.Value(2));
  if (!line.Value(3).empty()) TakeDecimals(context, line.Value(3));
}

void ReadUscale(SpecContext& context, const SplitLine& line) {
  RequireNothingScaled(context);
  TakeScale(context, line.Value(1));
}

void ReadUtf8Encoded(SpecContext& context, const SplitLine& line) {
  const char letter = FirstLetter(line.Value(1));
  context.Analysis.Settings.Encoding.Utf8Encoded = OneOf(letter, "YN") ? letter : '?';
}

void ReadUtf8Sub(SpecContext& context, const SplitLine& line) {
  if (!line.Value(1).empty()) context.Analysis.Settings.Encoding.Utf8Sub = line.Value(1).front();
}

void ReadVertical(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.VerticalSpec = line.NoValue() ? "N" : Joined(line.Values, ",");
}

void ReadXtreme(SpecContext& context, const SplitLine& line) {
  const float main = AbsoluteValue(line.Value(1));
  if (main > 0 && main < 1) context.Analysis.Settings.XtremeMain = main;
  const float bias = AbsoluteValue(line.Value(2));
  if (!line.Value(2).empty() && bias < 1) context.Analysis.Settings.XtremeBias = bias;
}

void ReadZscore(SpecContext& context, const SplitLine& line) {
  context.Analysis.Settings.ZscoreSize = AbsoluteValue(line.Value(1));
  context.Analysis.Settings.ZscoreT = AbsoluteValue(line.Value(2));
}

void Ignore(SpecContext& /*context*/, const SplitLine& /*line*/) {}

}  // namespace tessaly
