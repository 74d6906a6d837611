// Settings: one field for each keyword. The member initialisers are the defaults.
#pragma once

#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/bytes.h"

namespace tessaly {

enum class BiasDirection : std::int8_t { Plus = 1, Minus = -1, Omit = 0 };
/// What becomes of data lines that have too few fields or no reference where one must stand: the run halts, or they are
/// skipped and the first of each kind, or each of them, is told.
enum class InvalidLines : std::int8_t { Halt, Single, Repeated };
enum class SubsetReport : std::int8_t { Off, Detect, Report, List };

/// Random numbers start from 0 to this.
constexpr std::int32_t kHighestSeed = 2147483646;

struct Settings {
  /// `GivenTitle` and the date of the run.
  std::string Title;
  /// As the user wrote it.
  std::string GivenTitle;
  /// Facet letters by which Table 7 is arranged, items joined with commas; empty suppresses Table 7.
  std::string ArrangeSpec = "mN,fN,N";
  char AsciiOption = 'Y';
  /// 0 no, 1 yes, 2 all.
  int BarchartsOption = 1;
  bool BatchOption = false;
  bool BeepOn = false;
  tessaly::BiasDirection BiasDirection = tessaly::BiasDirection::Plus;
  bool BoxShow = true;
  float ConvergenceScore = 0.5F;
  float ConvergenceLogit = 0.01F;
  float ConvergenceCategoryScore = 0;
  float ConvergenceCategoryLogit = 0;
  /// Delimiter of output files; a blank for fields of fixed width.
  std::string CsvDelimiter = " ";
  std::string DelementsOption;
  /// `Dvalues=` entries as written, fields joined with commas.
  std::vector<std::string> DvaluesSpec;
  /// Target facet to its reference facets, in their order.
  std::map<std::int32_t, std::vector<std::int32_t>> Esubtotals;
  /// 'M' mean, 'Z' zero.
  char FairOption = 'M';
  float HardwareExponent = 80;
  /// exp(-HardwareExponent): floor of logarithms and divisions.
  float SmallestNumber = 1.8048514e-35F;
  bool HeadingLinesOption = true;
  /// The rater facet, then the facets to match; empty when agreement is not asked for.
  std::vector<std::int32_t> InterRaterFacets;
  InvalidLines InvalidLinesOption = InvalidLines::Halt;
  std::int32_t IterationsLimit = 0;
  std::int32_t JuxtaposeLines = 0;
  /// 'N': elements that data name and `Labels=` does not are not listed.
  char LabelsBuild = 'B';
  bool LeftHand = false;
  std::vector<std::string> MissingCodes;
  /// 0: iterative curve-fitting; otherwise the Newton-Raphson step size.
  float NewtonStep = 0;
  std::int32_t NullElement = 0;
  bool OmitUnobserved = true;
  /// 'Y' point-biserial, 'I' including the element's own, 'M' point-measure, 'N' none.
  char PtBiserial = 'M';
  /// Quotation mark around labels in output files; empty for none.
  std::string QuoteMark;
  bool QueryOption = false;
  bool RealSE = false;
  std::string ReplicationChar = "R";
  /// Fields of residual files in the order of their settings, 'Y' for those wanted; the twelfth is the digit of
  /// decimals.
  std::string ResponseFields = "YYYYYYYYYYY2YYY";
  /// Starts the random numbers of simulated data; nothing for the clock.
  std::optional<std::int32_t> Seed;
  /// Fields of score files, 'Y' for those wanted.
  std::string ScoreFields = std::string(28, 'Y');
  SubsetReport SubsetDetection = SubsetReport::Detect;
  bool T3onscreen = true;
  std::int32_t T4Max = 100;
  std::string T8NBC = "NBC";
  std::string TablesOption = "Y";
  bool TotalScore = true;
  std::int32_t Udecimals = 2;
  float Umean = 0;
  float Uscale = 1;
  float UnexpectedMin = 3;
  std::string USort = "u";
  TextEncoding Encoding;
  std::string VerticalSpec = "Y";
  bool Whexact = true;
  bool WriteIterations = false;
  float XtremeMain = 0.3F;
  float XtremeBias = 0.5F;
  /// Fonts of webpages, joined with commas. The generic one at the end keeps columns in line on any machine.
  std::string WebpageFont = "Lucida Console, Andale Mono, Courier New, monospace";
  bool WebpageBold = false;
  std::string YardstickSpec;
  float ZscoreSize = 0;
  float ZscoreT = 0;

  /// Folder for the temporary files of the run; empty for the system's.
  std::string WorkFolder;
  std::string SpecFileName;
  std::string OutputFileName;
  std::string AnchorFileName;
  std::string ResidualFileName;
  std::string GraphFileName;
  std::string ScoreFileName;
  std::string SimulatedFileName;
  /// File names joined with `+`; empty with `InlineData` for data inside the specification file.
  std::string DataFileName;
  bool InlineData = false;

  /// `measure` (logit) in user units.
  float UserMeasure(float measure) const { return Umean + Uscale * measure; }
  /// A standard error or deviation (logit) in user units.
  float UserSpread(float spread) const { return std::fabs(Uscale) * spread; }
  /// Whether `Zscore=` wants a bias of this size and t: one of its limits is reached, or there is none.
  bool BiasSelected(float size, float t) const {
    if (ZscoreSize == 0 && ZscoreT == 0) return true;
    return (ZscoreSize != 0 && std::fabs(size) >= ZscoreSize) || (ZscoreT != 0 && std::fabs(t) >= ZscoreT);
  }
};

}  // namespace tessaly
