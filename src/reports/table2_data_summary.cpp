#include "reports/table2_data_summary.h"

#include <map>
#include <string>

#include "reports/table1_specification.h"
#include "reports/table_frame.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// With more statements than the second number, those behind the first go to the report only.
constexpr std::int32_t kStatementsOnScreen = 10;
constexpr std::int32_t kStatementsToCut = 12;

/// Writes the counts.
class DataSummary {
 public:
  DataSummary(const Analysis& analysis, ReportWriter& report, Console& console)
      : analysis_(analysis), counters_(analysis.Counters), report_(report), console_(console) {}

  void Write() {
    Line("Total data lines =" + GeneralText(counters_.DataLines));
    MatchedResponses();
    Line("    Total non-blank responses found =" + GeneralText(counters_.ResponsesFound));
    Unspecified();
    if (analysis_.Models.UnmatchedResponses > 0)
      Line(GeneralText(analysis_.Models.UnmatchedResponses) + " Responses not matched to any model =");
    Count("              Number of blank lines =", counters_.BlankLines);
    Count("Data lines skipped as invalid =", counters_.SkippedLines);
    if (counters_.MissingCodeCount > 0)
      Line("Number of missing-code observations =" + GeneralText(counters_.MissingCodeCount) + " (" +
           Joined(analysis_.Settings.MissingCodes, ",") + ")");
    Count("Number of missing-null observations =", counters_.MissingNullCount);
    Count("Number of lines with R0 or less replications=", counters_.NoReplicationCount);
    Count("Number of invalid observations treated as missing =", counters_.InvalidCount);
    Count("Number of negative observations treated as missing =", counters_.NegativeCount);
    Count("Number of observations matching invalid models treated as missing =", counters_.InvalidModelCount);
    Line("Valid responses used for estimation =" + GeneralText(counters_.ValidResponses));
  }

 private:
  void Line(const std::string& text) {
    console_.ShowMessage(text);
    report_.WriteTableLine(text);
  }
  void Count(const std::string& words, std::int64_t count) {
    if (count > 0) Line(words + GeneralText(count));
  }

  void MatchedResponses() {
    const auto& statements = analysis_.Models.Statements;
    const bool cut = statements.size() > kStatementsToCut;
    std::int32_t number = 0;
    for (const ModelStatement& statement : statements) {
      ++number;
      if (cut && number == kStatementsOnScreen + 1)
        console_.ShowMessage(" See Output Table 2 for further" + GeneralText(statements.size() - kStatementsOnScreen) +
                             " models");
      if (statement.ModelResponses == 0) continue;
      const std::string text = "Responses matched to model: " + statement.StatementText() + " =" +
                               GeneralText(statement.ModelResponses) +
                               (statement.ModelType == ModelType::Missing ? "  ; treated as missing" : "");
      if (cut && number > kStatementsOnScreen) {
        report_.WriteTableLine(text);
      } else {
        Line(text);
      }
    }
  }

  void Unspecified() {
    if (counters_.UnspecifiedCount == 0) return;
    Line("Responses with unspecified elements =" + GeneralText(counters_.UnspecifiedCount));
    if (analysis_.EmptyFacet.value > 0)
      console_.ShowWarning("Warning (10)!: No elements specified for facet" + GeneralText(analysis_.EmptyFacet.value));
  }

  const Analysis& analysis_;
  const DataCounters& counters_;
  ReportWriter& report_;
  Console& console_;
};

/// Writes the elements that data name and `Labels=` does not, in the syntax of `Labels=`.
class UnspecifiedList {
 public:
  UnspecifiedList(const Analysis& analysis, ReportWriter& report) : analysis_(analysis), report_(report) {}

  void Write() {
    report_.WriteTableLine("");
    report_.WriteTableLine(
        "List of unspecified elements. Please copy and paste into your specification file, where needed");
    report_.WriteTableLine("Labels=Nobuild ; to suppress this list");
    std::int32_t facet = 0;
    for (const UnspecifiedElement& element : analysis_.Unspecified) {
      if (element.FacetNumber != facet) {
        if (facet != 0) report_.WriteTableLine(" *");
        facet = element.FacetNumber;
        StartFacet({facet});
      }
      report_.WriteTableLine(ElementLine(element));
    }
    report_.WriteTableLine(" *");
  }

 private:
  void StartFacet(FacetNumber number) {
    const Facet& facet = analysis_.Facets[number];
    std::string line =
        BareText(number.value) + ", " + facet.FacetLabel + ", " + std::string(TrimBlanks(facet.FacetFlags));
    if (facet.FacetPriority != 1) line += ", " + BareText(facet.FacetPriority);
    report_.WriteTableLine(line + " ; facet" + GeneralText(number.value));
    nextFree_ = facet.FacetHighestNumber;
    for (const UnspecifiedElement& element : analysis_.Unspecified) {
      if (element.FacetNumber == number.value) nextFree_ = std::max<std::int64_t>(nextFree_, element.ElementNumber);
    }
  }

  std::string ElementLine(const UnspecifiedElement& element) {
    std::int64_t number = element.ElementNumber;
    if (number < 0) {
      if (++nextFree_ == analysis_.Settings.NullElement) ++nextFree_;
      number = nextFree_;
    }
    std::string line = BareText(number) + " = " + element.Label;
    if (number == analysis_.Settings.NullElement)
      line += " ; this element number is ignored, because Null=" + GeneralText(number);
    return line;
  }

  const Analysis& analysis_;
  ReportWriter& report_;
  std::int64_t nextFree_ = 0;
};

}  // namespace

void StartDataSummaryTable(const Analysis& analysis, ReportWriter& report, Console& console) {
  TableFrame(report, analysis.Settings, console).StartTable("Table 2. Data Summary Report");
  if (!analysis.Settings.QueryOption) return;
  for (const StatementNumber statement : analysis.Models.Statements.all())
    report.WriteTableLine(analysis.Models.Statements[statement].StatementText() +
                          " ; active model statement for Query=Yes" + GeneralText(statement.value + 1));
}

void WriteDataSummary(const Analysis& analysis, ReportWriter& report, Console& console) {
  DataSummary(analysis, report, console).Write();
  if (analysis.Unspecified.empty() || analysis.Settings.LabelsBuild == 'N') return;
  console.ShowMessage(" See Output Table 2 for list of" +
                      GeneralText(static_cast<std::int64_t>(analysis.Unspecified.size())) + " unspecified elements");
  UnspecifiedList(analysis, report).Write();
}

}  // namespace tessaly
