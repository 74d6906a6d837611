#include "reports/table1_specification.h"

#include <algorithm>
#include <functional>

#include "reports/esubtotals_table.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::size_t kMostListed = 10;
constexpr float kDefaultHardware = 80;

std::string Letter(bool yes) {
  return yes ? "Y" : "N";
}

std::string DelimiterName(const std::string& delimiter) {
  if (delimiter == "\t") return "Tab";
  if (delimiter == ",") return "Comma";
  if (delimiter == ";") return "Semicolon";
  if (delimiter == " ") return "Fixed";
  return delimiter;
}

std::string_view BiasWords(BiasDirection direction) {
  switch (direction) {
    case BiasDirection::Plus:
      return "plus ; ability, easiness, leniency: higher score = positive logit";
    case BiasDirection::Minus:
      return "minus ;difficulty, severity: lower score = positive logit";
    case BiasDirection::Omit:
      break;
  }
  return "omit ; suppress bias estimation";
}

std::string_view CorrelationWord(char ptBiserial) {
  switch (ptBiserial) {
    case 'Y':
      return "Yes";
    case 'I':
      return "Include";
    case 'M':
      return "Measure";
    default:
      return "No";
  }
}

std::string_view BarchartWord(int option) {
  return option == 0 ? "No" : option == 1 ? "Yes" : "All";
}

/// Facet numbers for which `chosen` holds, joined with commas.
std::string FacetList(const FacetTable& facets, const std::function<bool(const Facet&)>& chosen,
                      const std::function<std::string(const Facet&)>& mark = {}) {
  std::vector<std::string> items;
  for (const FacetNumber facet : facets.all()) {
    if (chosen(facets[facet])) items.push_back(BareText(facet.value) + (mark ? mark(facets[facet]) : std::string()));
  }
  return Joined(items, ",");
}

/// Writes the lines of Table 1 in their order.
class SpecificationLines {
 public:
  SpecificationLines(const Analysis& analysis, ReportWriter& report, Console& console)
      : analysis_(analysis), settings_(analysis.Settings), report_(report), console_(console) {}

  void Write() {
    Files();
    DataSpecification();
    Models();
    OutputDescription();
    Convergence();
  }

 private:
  void Line(std::string_view text) { report_.WriteTableLine(text); }
  void Line(bool condition, const std::string& text) {
    if (condition) Line(text);
  }
  void ShownLine(const std::string& text) {
    console_.ShowMessage(text);
    Line(text);
  }
  void Heading(std::string_view text) {
    Line("");
    Line(text);
  }

  void Files() {
    ShownLine("Title = " + settings_.Title);
    if (!analysis_.SpecComments.empty()) {
      Heading(";; Comments =");
      for (const std::string& comment : analysis_.SpecComments) Line("  " + comment);
      Line("");
    }
    Line("Data file = " + (settings_.InlineData ? "(" + settings_.SpecFileName + ")" : settings_.DataFileName));
    Line("Output file = " + settings_.OutputFileName);
    Line(!settings_.AnchorFileName.empty(), "Anchor output file = " + settings_.AnchorFileName);
    Line(!settings_.GraphFileName.empty(), "Graph output file = " + settings_.GraphFileName);
    Line(!settings_.ResidualFileName.empty(), "Residual output file = " + settings_.ResidualFileName);
    Line(!settings_.SimulatedFileName.empty(), "Simulated data output file = " + settings_.SimulatedFileName);
  }

  void DataSpecification() {
    Heading("; Data specification");
    const std::int32_t columns = analysis_.Fields.DataFacetCount();
    ShownLine("Facets =" + GeneralText(analysis_.FacetCount()) +
              (columns != analysis_.FacetCount() ? "," + BareText(columns) : std::string()));
    Line(!InPlainOrder(analysis_.Fields.Columns), "Entered-in-data = " + EnteredList());
    const bool byNumber = settings_.DelementsOption.empty() || settings_.DelementsOption == "N";
    Line("Delements = " + (byNumber ? "N  ; element identifiers are element numbers" : settings_.DelementsOption));
    Dvalues();
    for (const std::string& line : EsubtotalsBlock(settings_.Esubtotals)) Line(line);
    Origins();
    Line("Positive = " + FacetList(analysis_.Facets, [](const Facet& f) { return f.FacetPositive; }));
    Labels();
    if (settings_.NullElement != 0) ShownLine("Null (Keepzero) element=" + GeneralText(settings_.NullElement));
  }

  /// Column c holds facet c, and what is beyond the facets is not used.
  bool InPlainOrder(const ColumnTable& columns) const {
    for (const ColumnNumber column : columns.all())
      if (columns[column].ColumnFacet.value != (column.value <= analysis_.FacetCount() ? column.value : 0))
        return false;
    return true;
  }

  std::string EnteredList() const {
    std::vector<std::string> items;
    for (const DataColumn& column : analysis_.Fields.Columns)
      items.push_back(column.ColumnFacet.value == 0 ? "0(unused)" : BareText(column.ColumnFacet.value));
    return Joined(items, ",");
  }

  void Dvalues() {
    const auto& entries = settings_.DvaluesSpec;
    if (entries.empty()) return;
    if (entries.size() == 1) {
      Line("Dvalues = " + entries.front() + " ; fixed values for data facets");
      return;
    }
    Line("Dvalues =  ; values for data facets");
    for (const std::string& entry : entries) Line(entry);
    Line("*");
  }

  void Origins() {
    const auto withExtremes = [](const Facet& f) { return f.FacetCenter == Centering::CenteredWithExtremes; };
    if (std::any_of(analysis_.Facets.begin(), analysis_.Facets.end(), withExtremes)) {
      Line("Centered = " + FacetList(
                               analysis_.Facets, [](const Facet& f) { return f.FacetCenter != Centering::NotCentered; },
                               [&](const Facet& f) { return withExtremes(f) ? "Z" : ""; }));
    } else {
      Line("Non-centered = " +
           FacetList(analysis_.Facets, [](const Facet& f) { return f.FacetCenter == Centering::NotCentered; }));
    }
  }

  void Labels() {
    ShownLine("Labels =");
    for (const FacetNumber number : analysis_.Facets.all()) {
      const Facet& facet = analysis_.Facets[number];
      if (!facet.HasElements()) continue;
      ShownLine(facet.FacetLabel + "," + BareText(number.value) + ", " + std::string(TrimBlanks(facet.FacetFlags)) +
                "," + BareText(facet.FacetElementCount) + " ; (elements =" + GeneralText(facet.FacetElementCount) +
                ", highest group =" + GeneralText(std::int32_t{facet.FacetGroupMax}) + ")");
    }
  }

  void Models() {
    const ModelTables& models = analysis_.Models;
    std::string word = "Model = ";
    std::size_t listed = 0;
    for (const ModelStatement& statement : models.Statements) {
      if (listed++ == kMostListed) break;
      Line(word + statement.StatementText());
      word.clear();
    }
    if (static_cast<std::size_t>(models.Statements.size()) > kMostListed) {
      Line("....");
      Line("*");
    }
    listed = 0;
    for (const DefinitionNumber definition : models.Definitions.all()) {
      if (listed++ == kMostListed) {
        Line("....");
        break;
      }
      Line(DefinitionText(definition));
    }
  }

  std::string DefinitionText(DefinitionNumber number) const {
    const RatingScaleDefinition& definition = analysis_.Models.Definitions[number];
    const auto& statements = analysis_.Models.Statements;
    const bool used = std::any_of(statements.begin(), statements.end(),
                                  [&](const ModelStatement& s) { return s.ModelDefinition == number; });
    return "Rating (or other) scale = " + definition.Name + "," + definition.Code +
           (definition.Specific ? ",Specific" : ",General") + (definition.Keep ? ",Keep" : ",Ordinal") + "," +
           definition.Subtitle + (used ? "" : " ; Warning (3)! This is NOT referenced by a Model= specification");
  }

  void OutputDescription() {
    Heading("; Output description");
    Layout();
    Line("Bias/Interaction direction = " + std::string(BiasWords(settings_.BiasDirection)));
    Line(std::string("Fair score = ") + (settings_.FairOption == 'Z' ? "Zero" : "Mean"));
    Line("Pt-biserial = " + std::string(CorrelationWord(settings_.PtBiserial)));
    Line(settings_.HardwareExponent != kDefaultHardware,
         "Hardware maximum exponent =" + GeneralText(settings_.HardwareExponent));
    Line("Heading lines in output data files = " + Letter(settings_.HeadingLinesOption));
    InterRater();
    Line(settings_.JuxtaposeLines > 0, "Juxtaposition heading every lines =" + GeneralText(settings_.JuxtaposeLines));
    Line(!settings_.OmitUnobserved, "Omit unobserved elements = No");
    Line(!settings_.QuoteMark.empty(), "QM quote marks around labels = " + settings_.QuoteMark);
    Line(!settings_.ScoreFileName.empty(), "Scorefile = " + settings_.ScoreFileName);
    Line(settings_.CsvDelimiter != " ", "CSValues = " + DelimiterName(settings_.CsvDelimiter));
    Line("Barchart = " + std::string(BarchartWord(settings_.BarchartsOption)));
    Line(settings_.RealSE, "Standard error = Real ; enlarged by mean square infit");
    Line(settings_.TotalScore, "Total score for elements = Yes");
    Line("T3onscreen show only one line on screen iteration report = " + Letter(settings_.T3onscreen));
    Line("T4MAX maximum number of unexpected observations reported in Table 4 =" + GeneralText(settings_.T4Max));
    Line("T8NBC show table 8 numbers-barcharts-curves = " + settings_.T8NBC);
    UserScale();
    Line("Unexpected observations reported if standardized residual >=" + GeneralText(settings_.UnexpectedMin));
    Line(!settings_.USort.empty(), "Usort unexpected observations sort order = " + settings_.USort);
    Encoding();
    Line(!settings_.VerticalSpec.empty(), "Vertical ruler definitions = " + settings_.VerticalSpec);
    Line("WHexact - Wilson-Hilferty standardization = " + Letter(settings_.Whexact));
    Line(!settings_.YardstickSpec.empty(), "Yardstick: dimensions in rulers = " + settings_.YardstickSpec);
    Line(settings_.WriteIterations, "Write iteration residuals in output file = yes");
    Line(settings_.ZscoreSize != 0 || settings_.ZscoreT != 0,
         "Zscore (Bias size/significance) not less than = " + BareText(settings_.ZscoreSize) + "," +
             BareText(settings_.ZscoreT) + " ; bias size, t-score");
  }

  void Layout() {
    Line(!settings_.ArrangeSpec.empty(), "Arrange tables in order = " + settings_.ArrangeSpec);
    Line(settings_.AsciiOption == 'N', "ASCII table format = N ; PC drawing characters: Letter Gothic");
    Line(settings_.AsciiOption == 'W', "ASCII table format = W ; HTML code: display as webpage");
    Line(!settings_.BoxShow, "Box show around Tables = N ; hide box-drawing characters");
  }

  void InterRater() {
    const auto& facets = settings_.InterRaterFacets;
    if (facets.empty() || facets.front() == 0) return;
    std::string text = "Inter-rater coefficients reported for facet =" + GeneralText(facets.front());
    for (std::size_t i = 1; i < facets.size(); ++i) text += "," + BareText(facets[i]);
    Line(text + (facets.size() > 1 ? " ; matching facets" : ""));
  }

  void UserScale() {
    if (settings_.Umean == 0 && settings_.Uscale == 1 && settings_.Udecimals == 2) return;
    Line("Umean =" + GeneralText(settings_.Umean) + "," + BareText(settings_.Uscale) + "," +
         BareText(settings_.Udecimals) + " ; Umean, Uscale, Udecimals");
  }

  void Encoding() {
    const TextEncoding& encoding = settings_.Encoding;
    Line(encoding.Utf8Encoded != '?', std::string("UTF8encoded = ") + encoding.Utf8Encoded);
    Line(encoding.Utf8Sub != '.', std::string("UTF8sub substitute code = ") + encoding.Utf8Sub);
  }

  void Convergence() {
    Heading("; Convergence control");
    Line("Convergence = " + PlainNumber(settings_.ConvergenceScore) + "," + PlainNumber(settings_.ConvergenceLogit) +
         "," + PlainNumber(settings_.ConvergenceCategoryScore) + "," + PlainNumber(settings_.ConvergenceCategoryLogit));
    Line("Iterations (maximum) =" + GeneralText(settings_.IterationsLimit) +
         (settings_.IterationsLimit == 0 ? " ; unlimited" : ""));
    Line(settings_.NewtonStep != 0, "Newton-Raphson =" + GeneralText(settings_.NewtonStep));
    Line("Xtreme scores adjusted by =" + GeneralText(settings_.XtremeMain) + "," + BareText(settings_.XtremeBias) +
         "  ;(estimation, bias)");
    Line("");
  }

  const Analysis& analysis_;
  const Settings& settings_;
  ReportWriter& report_;
  Console& console_;
};

}  // namespace

void ProgramBanner(const std::string& runDate, ReportWriter& report) {
  report.WriteTableLine("Tessaly Version No." TESSALY_VERSION);
  report.WriteTableLine(runDate);
}

void SpecificationTable(const Analysis& analysis, ReportWriter& report, ReportConsole& console) {
  TableFrame(report, analysis.Settings, console)
      .StartTable("Table 1. Specifications from file \"" + analysis.Settings.SpecFileName + "\"");
  const std::vector<std::string> warnings = console.TakePendingWarnings();
  if (!warnings.empty()) {
    report.WriteTableLine(" Messages:");
    for (const std::string& warning : warnings) report.WriteTableLine(warning);
    report.WriteTableLine("");
  }
  SpecificationLines(analysis, report, console).Write();
}

}  // namespace tessaly
