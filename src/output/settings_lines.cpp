#include "output/settings_lines.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

#include "output/spec_text.h"
#include "reports/esubtotals_table.h"
#include "spec/named_marks.h"
#include "support/bytes.h"
#include "support/expression.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::string_view kGlabelWords = "Glabel group labels = ";

std::string YesOrNo(bool value) {
  return value ? "Yes" : "No";
}

/// General text, unless more digits are needed for the value to come back.
std::string Number(float value) {
  std::string text = GeneralText(value);
  return EvaluateExpression(text) == value ? text : ' ' + SpecNumber(value);
}

std::string Numbers(std::initializer_list<float> values) {
  std::vector<std::string> texts;
  for (const float value : values) texts.push_back(Number(value));
  return Joined(texts, ",");
}

std::string NumberOr(float value, std::string_view ofZero) {
  return value == 0 ? std::string(ofZero) : Number(value);
}

std::string_view BiasText(BiasDirection direction) {
  switch (direction) {
    case BiasDirection::Plus:
      return "plus ; ability, leniency, easiness: higher score = positive logit";
    case BiasDirection::Minus:
      return "minus ; difficulty, severity: lower score = positive logit";
    default:
      return "omit ; suppress bias estimation";
  }
}

std::string_view CorrelationText(char option) {
  return option == 'Y' ? "Yes" : option == 'I' ? "Include" : option == 'M' ? "Measure" : "No";
}

std::string_view SubsetText(SubsetReport option) {
  constexpr std::string_view kTexts[] = {"No", "Yes", "Report", "List"};
  return kTexts[static_cast<std::size_t>(option)];
}

std::string_view InvalidLinesText(InvalidLines option) {
  constexpr std::string_view kTexts[] = {"Halt", "Single", "Repeated"};
  return kTexts[static_cast<std::size_t>(option)];
}

/// Collects the lines, from A to Z.
class SettingsList {
 public:
  explicit SettingsList(const Analysis& analysis)
      : analysis_(analysis), settings_(analysis.Settings), facets_(analysis.Facets) {}

  std::vector<std::string> Lines() {
    Add("; Specifications for ", settings_.SpecFileName);
    Add("Title for each results table = ", settings_.GivenTitle);
    Add("Facets in data =", GeneralText(facets_.size()) + "," + GeneralText(analysis_.Fields.DataFacetCount()) +
                                " ; label facets, data facets");
    AddAToC();
    AddDToG();
    AddHToM();
    AddNToS();
    AddTToU();
    AddVToZ();
    return std::move(lines_);
  }

 private:
  void Add(std::string_view words, std::string_view value) { lines_.push_back(std::string(words).append(value)); }
  void AddAll(const std::vector<std::string>& lines) { lines_.insert(lines_.end(), lines.begin(), lines.end()); }

  /// The numbers of the facets for which `item` gives a text, which stands behind them.
  template <class Item>
  void AddFacets(std::string_view words, Item item) {
    std::vector<std::string> items;
    for (const FacetNumber facet : facets_.all())
      if (const char* const text = item(facets_[facet])) items.push_back(BareText(facet.value) + text);
    lines_.emplace_back(TrimRight(std::string(words) + Joined(items, ",")));
  }

  void AddAToC() {
    Add("Anchor output file = ", settings_.AnchorFileName);
    Add("Arrangement by Number/Alpha/Measure/Fit/PBS (Asc./Desc.) = ", settings_.ArrangeSpec);
    Add("ASCII output table display format = ", std::string(1, settings_.AsciiOption));
    Add("Barcharts output = ", settings_.BarchartsOption == 2 ? "All" : settings_.BarchartsOption == 1 ? "Yes" : "No");
    Add("Batch processing = ", YesOrNo(settings_.BatchOption));
    Add("Beep sound = ", YesOrNo(settings_.BeepOn));
    Add("Bias (direction: difficulty/ability/omit) = ", BiasText(settings_.BiasDirection));
    Add("Box show around Tables = ", YesOrNo(settings_.BoxShow));
    AddFacets("Center elements in facet = ", [](const Facet& facet) {
      return facet.FacetCenter == Centering::Centered      ? ""
             : facet.FacetCenter == Centering::NotCentered ? nullptr
                                                           : "Z";
    });
    Add("Convergence (criteria to end iteration: score residual + change + category residual + change) = ",
        Numbers({settings_.ConvergenceScore, settings_.ConvergenceLogit, settings_.ConvergenceCategoryScore,
                 settings_.ConvergenceCategoryLogit}));
    Add("CSV output format = ", DelimiterWord(settings_.CsvDelimiter));
  }

  void AddDToG() {
    if (!settings_.InlineData) {
      Add("Data file name = ", settings_.DataFileName);
    } else if (settings_.SpecFileName.empty()) {
      Add("; Data file name = ", "(in specification file)");
    } else {
      Add("; Data file name = ", "(" + settings_.SpecFileName + ")");
    }
    Add("Delements element identifiers in data = ", settings_.DelementsOption);
    AddAll(DvaluesLines(settings_));
    std::vector<std::string> entered;
    for (const DataColumn& column : analysis_.Fields.Columns) entered.push_back(BareText(column.ColumnFacet.value));
    Add("Entry order of facets in data = ", Joined(entered, ","));
    AddAll(EsubtotalsBlock(settings_.Esubtotals));
    Add("Fair-average score based on = ", settings_.FairOption == 'Z'
                                              ? "Zero ; local origin of the measures of the elements in the facet"
                                              : "Mean ; average measure of elements in facet");
    if (analysis_.GroupLabels.empty()) Add(kGlabelWords, "");
    AddAll(GlabelLines(analysis_));
    Add("Graph plotting output file name = ", settings_.GraphFileName);
  }

  void AddHToM() {
    Add("Hardware maximum exponent =", Number(settings_.HardwareExponent));
    Add("Heading lines in output data files = ", YesOrNo(settings_.HeadingLinesOption));
    Add("Inter-rater agreement coefficients reported for facet =", InterRaterText());
    Add("Invalid data lines = ", InvalidLinesText(settings_.InvalidLinesOption));
    Add("Iterations (maximum before reporting) =",
        settings_.IterationsLimit == 0 ? " 0 ; unlimited" : GeneralText(settings_.IterationsLimit));
    Add("Juxtapose (column headings after every this many lines) =",
        settings_.JuxtaposeLines == 0 ? " 0 ; only at top of table" : GeneralText(settings_.JuxtaposeLines));
    Add("Keep as Null element in facet =", GeneralText(settings_.NullElement));
    Add("Left-hand placement of element labels in Table 7 = ", YesOrNo(settings_.LeftHand));
    Add("Missing data codes = ", Joined(settings_.MissingCodes, ","));
  }

  std::string InterRaterText() const {
    if (settings_.InterRaterFacets.empty()) return GeneralText(0);
    std::vector<std::string> facets;
    for (const std::int32_t facet : settings_.InterRaterFacets) facets.push_back(GeneralText(facet));
    return Joined(facets, ",") + (facets.size() > 1 ? " ; matching facets" : "");
  }

  void AddNToS() {
    const auto listed = [](bool in) { return in ? "" : nullptr; };
    AddFacets("Negatively-oriented facets = ", [&](const Facet& facet) { return listed(!facet.FacetPositive); });
    Add("Newton-Raphson step size =", NumberOr(settings_.NewtonStep, " 0 ; use iterative curve-fitting"));
    const bool withExtremes = std::any_of(facets_.begin(), facets_.end(), [](const Facet& facet) {
      return facet.FacetCenter == Centering::CenteredWithExtremes;
    });
    if (!withExtremes)
      AddFacets("; Non-center (float) elements in facets = ",
                [&](const Facet& facet) { return listed(facet.FacetCenter == Centering::NotCentered); });
    Add("Omit unobserved elements = ", YesOrNo(settings_.OmitUnobserved));
    Add("Output report and table file = ", settings_.OutputFileName);
    AddFacets("; Positively-oriented facets =", [&](const Facet& facet) { return listed(facet.FacetPositive); });
    Add("Pt-biserial = ", CorrelationText(settings_.PtBiserial));
    Add("QM quote marks around labels = ", QuoteMarkWord(settings_.QuoteMark));
    Add("Query to monitor matching of data to models = ", YesOrNo(settings_.QueryOption));
    Add("Replication character in data = ", settings_.ReplicationChar);
    Add("Residual/Response output file = ", settings_.ResidualFileName);
    Add("Score output files name = ", settings_.ScoreFileName);
    if (settings_.Seed) Add("Seed of random numbers =", GeneralText(*settings_.Seed));
    Add("Simulated data output file = ", settings_.SimulatedFileName);
    Add("Standard error is Model/Real) = ",
        settings_.RealSE ? "Real ; enlarged by mean square infit" : "Model ; assumes data fits the model");
    Add("Subset detection = ", SubsetText(settings_.SubsetDetection));
  }

  void AddTToU() {
    Add("T3onscreen show only one line on screen iteration report = ", YesOrNo(settings_.T3onscreen));
    Add("T4MAX maximum number of unexpected observations reported in Table 4 =", GeneralText(settings_.T4Max));
    Add("T8NBC show Table 8 numbers-barcharts-curves = ", settings_.T8NBC);
    Add("Tables are displayed after main analysis = ", settings_.TablesOption);
    Add("Totalscore for elements = ", settings_.TotalScore ? "Yes ; includes observations in extreme scores"
                                                           : "No ; excludes observations in extreme scores");
    lines_.push_back(UmeanLine(settings_));
    Add("Unexpected observations reported in Table 4 if standardized residuals not less than) =",
        Number(settings_.UnexpectedMin));
    Add("Usort sort order of unexpected responses = ", settings_.USort);
    Add("UTF8encoded texts = ", std::string(1, settings_.Encoding.Utf8Encoded));
    Add("UTF8sub for what cannot be shown = ", std::string(1, settings_.Encoding.Utf8Sub));
  }

  void AddVToZ() {
    Add("Vertical ruler columns in Table 6 = ", settings_.VerticalSpec);
    Add("Whexact exact Wilson-Hilferty fit standardization = ", YesOrNo(settings_.Whexact));
    Add("Write iteration details in results output file = ", YesOrNo(settings_.WriteIterations));
    Add("Xtreme scores adjusted by =",
        Numbers({settings_.XtremeMain, settings_.XtremeBias}) + "  ; during main estimation, during bias estimation");
    Add("Yardstick: dimensions in Table 6 rulers = ",
        settings_.YardstickSpec + " ; columns, lines, low, high, extreme");
    Add("Zscore minimum for reported bias terms not less than = ",
        Numbers({settings_.ZscoreSize, settings_.ZscoreT}) + " ; bias size, t-score");
  }

  const Analysis& analysis_;
  const Settings& settings_;
  const FacetTable& facets_;
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> SettingsLines(const Analysis& analysis) {
  return SettingsList(analysis).Lines();
}

std::string UmeanLine(const Settings& settings) {
  return "Umean (user mean - scale - decimal places)= " + Numbers({settings.Umean, settings.Uscale}) + "," +
         GeneralText(settings.Udecimals) + " ; Umean, Uscale, Udecimals";
}

std::vector<std::string> GlabelLines(const Analysis& analysis) {
  if (analysis.GroupLabels.empty()) return {};
  std::vector<std::string> lines = {std::string(kGlabelWords)};
  for (const auto& [group, label] : analysis.GroupLabels)
    lines.push_back(BareText(group.first) + ", " + BareText(group.second) + ", " + label);
  if (lines.size() == 2) return {lines[0] + lines[1]};
  lines.emplace_back("*");
  return lines;
}

std::vector<std::string> DvaluesLines(const Settings& settings) {
  const std::string words = "Dvalues for data facet = ";
  const std::string comment = " ; values for data facets";
  const std::vector<std::string>& entries = settings.DvaluesSpec;
  if (entries.empty()) return {};
  if (entries.size() == 1) return {words + entries[0] + comment};
  std::vector<std::string> lines = {words + comment};
  lines.insert(lines.end(), entries.begin(), entries.end());
  lines.emplace_back("*");
  return lines;
}

void WriteSettings(const Analysis& analysis, TextOutput& file) {
  for (const std::string& line : SettingsLines(analysis)) file.WriteLine(line);
}

}  // namespace tessaly
