#include "spec/keywords.h"

#include <algorithm>
#include <string>

#include "spec/arrange.h"
#include "spec/delements.h"
#include "spec/dvalues.h"
#include "spec/entered.h"
#include "spec/esubtotals.h"
#include "spec/facet_keywords.h"
#include "spec/file_keywords.h"
#include "spec/glabel.h"
#include "spec/labels_block.h"
#include "spec/models_block.h"
#include "spec/rating_scale_block.h"
#include "spec/setting_keywords.h"
#include "spec/setting_values.h"
#include "support/bytes.h"

namespace tessaly {
namespace {

constexpr Keyword kKeywords[] = {
    {"Anchorfile=", "AN", "file name", "none", "Writes a specification file with the estimates as anchor values.",
     ReadAnchorfile},
    {"Arrange=", "A", "codes: facet number (optional), letters of A F M N P a f m n p; empty for no Table 7", "mN,fN,N",
     "Orders of the measurement reports (Table 7): by alphabet, fit, measure, number, point-biserial; capitals "
     "ascending, small letters descending.",
     ReadArrange},
    {"ASCII=", "AS", "Y, N or W", "Y", "Form of the report: Y text, N text with drawing characters, W webpage.",
     ReadAscii},
    {"Barcharts=", "BA", "Y, A or N", "Y", "Bar charts behind the rulers of Table 6: Y yes, A all, N no.",
     ReadBarcharts},
    {"Batch=", "BAT", "Y or N", "N", "Runs without asking anything.", YesNo<&Settings::BatchOption>},
    {"Beep=", "BE", "Y or N", "N", "A beep with warnings at the end of the run.", YesNo<&Settings::BeepOn>},
    {"Bias=", "B BAD", "plus (+ P A L E), minus (- N D M S) or omit", "plus",
     "Direction of bias terms: plus for a higher score than expected, minus for a lower one; omit for no bias "
     "analysis.",
     ReadBias},
    {"Boxshow=", "BOX", "Y or N", "Y", "Draws boxes around the tables.", YesNo<&Settings::BoxShow>},
    {"Center=", "CE", "facet numbers, each with Z to count extreme elements in the mean", "all facets but the first",
     "Centers the listed facets; all others are not centered.", ReadCenter, KeywordUse::Once, "Noncenter="},
    {"Convergence=", "C", "score residual, logit change, category residual, step change", "0.5, 0.01, 0, 0",
     "Criteria that end the estimation. A value left out keeps its default.", ReadConvergence},
    {"CSV=", "CS", "Tab, Comma (or Y), Semicolon, Blank (or N, F), or another text", "Blank",
     "What separates the fields of output files.", ReadCsv},
    {"Data=", "D", "file names joined with +, or empty for data behind this line", "none",
     "Where the data are. The first name stands; an empty value behind a name ends the specification.", ReadData,
     KeywordUse::Repeated},
    {"Delements=", "DE", "list of facet number (optional) with N, L, NL or LN", "N",
     "Whether data refer to the elements of a facet by number, by label, or by one and then the other.", ReadDelements},
    {"Dvalues=", "DV", "column, value; or column, column, start, length; or column, column, $G; one or a block", "none",
     "Data columns that are not in the data lines: a fixed reference, or a piece of the label (with $G the group) of "
     "the element in another column.",
     ReadDvalues},
    {"Entered=", "E ES", "facet of each data column, 0 for a column without facet", "1, 2, 3, ...",
     "Which facets the data columns refer to.", ReadEntered},
    {"Esubtotals=", "ESU", "target facet, reference facets; one or a block", "none",
     "Lists, for each element, the one element of each facet that it was observed with.", ReadEsubtotals,
     KeywordUse::Repeated},
    {"Facets=", "F", "number of facets, number of data columns (up to 255)", "required",
     "How many facets there are, and how many columns of element references, if that differs.", ReadFacets},
    {"Fair=", "FAI", "Mean or Zero", "Mean",
     "Fair scores with the other facets at the mean of their elements, or at their local origins.", ReadFair},
    {"Glabel=", "GL", "facet, group, label; one or a block", "none", "Labels of element groups in Table 7.", ReadGlabel,
     KeywordUse::Repeated},
    {"Graphfile=", "GR", "file name, code as in CSV=", "none", "Writes the curves of the graphs to a file.",
     ReadGraphfile},
    {"Hardware=", "H", "number above 0", "80", "Largest exponent: the limit of measures, in logits.", ReadHardware},
    {"Heading lines=", "HE HL", "Y or N", "Y", "Column headings in output files.",
     YesNo<&Settings::HeadingLinesOption>},
    {"HS=", "HS", "anything", "none", "Accepted without effect.", Ignore},
    {"Inter-rater=", "IN", "facet of the raters, facets to match", "0", "Reports the agreement between raters.",
     ReadInterRater},
    {"Invalid lines=", "INV", "Single (or 1), Repeated (or 2) or Halt", "Halt",
     "Data lines with too few fields, or with a text where an element number must stand: Single skips them and tells "
     "the first one, Repeated skips them and tells each, Halt stops the run.",
     ReadInvalidLines},
    {"Iterations=", "I", "whole number", "0", "Most iterations of the estimation; 0 for no limit.",
     Integer<&Settings::IterationsLimit>},
    {"Juxtapose=", "J", "whole number", "0",
     "Repeats column headings after so many lines; 0 for headings at the top only.",
     AbsoluteInteger<&Settings::JuxtaposeLines>},
    {"Keepzero=", "K", "whole number from -1 to 2147483646", "0", "Another name for Null=.", ReadNull, KeywordUse::Once,
     "Null="},
    {"Labels=", "L", "Build or Nobuild; a block", "Build",
     "Facets and elements. With Nobuild elements in data that are not listed here are not listed in Table 2 either.",
     ReadLabels},
    {"Left-hand=", "LE", "Y or N", "N", "Element labels on the left in Table 7.", YesNo<&Settings::LeftHand>},
    {"Missing=", "MI", "response codes", "none", "Responses that count as missing.", ReadMissing},
    {"Models=", "M", "element references by facet, scale, weight; one or a block", "?, ..., D",
     "Model statements: which observations are analysed by which scale.", ReadModels},
    {"Negative=", "NE", "facet numbers, Y or N", "all facets but the first",
     "Facets whose elements lower the score: the listed ones, all (Y) or none (N).", ReadNegative, KeywordUse::Once,
     "Positive="},
    {"Newton=", "NEW", "step size, Y for 0.5", "0", "Newton-Raphson estimation; 0 for iterative curve-fitting.",
     ReadNewton},
    {"Noncenter=", "N", "facet numbers, 0 for none", "1", "Facets that are not centered; all others are.",
     ReadNoncenter},
    {"Null=", "NU", "whole number from -1 to 2147483646", "0",
     "Number of the null element: a reference to it is a reference to no element.", ReadNull},
    {"Omit-unobserved=", "OM", "Y or N", "Y", "Leaves elements without observations out of Table 7.",
     YesNo<&Settings::OmitUnobserved>},
    {"Output=", "O", "report, anchor, residual, graph file name", "from the specification file's name",
     "Names of the output files. A name given here replaces others.", ReadOutput},
    {"Positive=", "P", "facet numbers, Y or N", "1",
     "Facets whose elements raise the score: the listed ones, all (Y) or none (N).", ReadPositive},
    {"Pt-biserial=", "PT POI G", "Y (or B, P, O), I (or A), M or N", "M",
     "Correlation in Table 7: Y point-biserial, I the same with the element's own response, M point-measure, N none.",
     ReadPtBiserial},
    {"QM=", "QM", "Double, Apostrophe, Comma, Semicolon, Blank, None, or the text itself", "None",
     "Quote marks around labels in output files.", ReadQuoteMark},
    {"Query=", "Q", "Y or N", "N", "Shows how data are matched with model statements.", YesNo<&Settings::QueryOption>},
    {"Rating scale=", "R", "name, code, General or Specific, Ordinal or Keep, (nothing), subtitle; a block", "none",
     "A named scale: category labels, thresholds and recoding.", ReadRatingScale, KeywordUse::Repeated},
    {"Replication=", "REP", "text", "R", "What a replication field in data begins with.", ReadReplication},
    {"Residualfile=", "RES YN", "file name", "none", "Writes a file of residuals.", ReadResidualfile},
    {"Scorefile=", "SC", "file name, code as in CSV=", "none", "Writes a file of measures for each facet.",
     ReadScorefile},
    {"Seed=", "SEED", "whole number from 0 to 2147483646", "from the clock",
     "Where the random numbers of Simulated= start: the same number gives the same data.", ReadSeed},
    {"Show unobserved=", "SH", "Y or N", "N", "Shows elements without observations: the opposite of Omit-unobserved=.",
     NoYes<&Settings::OmitUnobserved>, KeywordUse::Once, "Omit-unobserved="},
    {"Simulated=", "SI", "file name", "none", "Writes a file of simulated data.", ReadSimulated},
    {"Standard errors=", "S", "Real (or E) or Model", "Model",
     "Standard errors enlarged by misfit, or as the model has them.", ReadStandardErrors},
    {"Subsets=", "SU", "Yes, Report, List or No", "Yes", "Looks for elements whose measures cannot be compared.",
     ReadSubsets},
    {"T3onscreen=", "T3", "Y or N", "Y", "Shows one line for each iteration on the screen.", ReadT3onscreen},
    {"T4MAX=", "T4", "whole number", "100", "Most unexpected responses in Table 4.", AbsoluteInteger<&Settings::T4Max>},
    {"T8NBC=", "T8", "letters of N, B, C", "NBC", "Parts of Table 8: numbers, bar charts, curves.", ReadT8},
    {"Tables=", "TA", "Y, N, or a digit 0 or 1 for each of Tables 1 to 14", "Y",
     "Which tables are written. N ends the run after the output files.", ReadTables},
    {"Title=", "T", "text", "none", "Heading of the report; the date of the run is put behind it.", ReadTitle},
    {"Totalscore=", "TO", "Y or N", "Y", "Scores and counts in Table 7 include responses to extreme elements.",
     YesNo<&Settings::TotalScore>},
    {"Udecimals=", "UD", "whole number up to 9", "2", "Decimals of measures.", ReadUdecimals},
    {"Umean=", "UM", "mean, units per logit, decimals", "0, 1, 2",
     "User units of measures. Goes before Labels= and Rating scale=.", ReadUmean},
    {"Unexpected=", "U", "number", "3", "Least standardized residual of a response in Table 4.",
     AbsoluteNumber<&Settings::UnexpectedMin>},
    {"Uscale=", "USC", "number", "1", "Units per logit. Goes before Labels= and Rating scale=.", ReadUscale},
    {"Usort=", "USO", "list of sort orders", "u", "Orders of Table 4.", List<&Settings::USort>},
    {"UTF8encoded=", "UTF8E", "Y, N or ?", "?",
     "Whether texts with bytes above 127 are UTF-8: Y all, N none, ? those that are valid.", ReadUtf8Encoded},
    {"UTF8sub=", "UT", "character", ".", "Stands in for characters that cannot be shown.", ReadUtf8Sub},
    {"Vertical=", "V", "list of ruler columns, N or empty for none", "Y", "Columns of the rulers in Table 6.",
     ReadVertical},
    {"Whexact=", "WH", "Y or N", "Y", "Standardizes fit by the exact form of the Wilson-Hilferty transformation.",
     YesNo<&Settings::Whexact>},
    {"Write=", "W", "Y or N", "N", "Details of the iterations in the report.", YesNo<&Settings::WriteIterations>},
    {"Xtreme=", "X", "score points in the estimation, in bias terms (above 0, below 1)", "0.3, 0.5",
     "How far extreme scores are moved inward to get finite measures.", ReadXtreme},
    {"Yardstick=", "Y", "columns, lines, low, high, extremes", "none", "Dimensions of the rulers in Table 6.",
     List<&Settings::YardstickSpec>},
    {"Zscore=", "Z", "bias size, t-score", "0, 0", "Least size or t of the rows of Tables 13 and 14.", ReadZscore},
};

constexpr std::size_t kLongestPrefix = 5;

/// Whether `prefixes` has the first `length` characters of `text`, in capitals.
constexpr bool HasPrefix(std::string_view prefixes, std::string_view text, std::size_t length) {
  while (!prefixes.empty()) {
    const std::size_t end = std::min(prefixes.find(' '), prefixes.size());
    bool equal = end == length;
    for (std::size_t i = 0; equal && i < length; ++i) equal = prefixes[i] == UpperAscii(text[i]);
    if (equal) return true;
    prefixes.remove_prefix(std::min(end + 1, prefixes.size()));
  }
  return false;
}

constexpr const Keyword* Find(std::string_view text) {
  for (std::size_t length = std::min(kLongestPrefix, text.size()); length > 0; --length)
    for (const Keyword& keyword : kKeywords)
      if (HasPrefix(keyword.Prefixes, text, length)) return &keyword;
  return nullptr;
}

constexpr bool EveryNameFindsItsKeyword() {
  for (const Keyword& keyword : kKeywords)
    if (Find(keyword.Name) != &keyword) return false;
  return true;
}

constexpr bool EveryPrefixFindsItsKeyword() {
  for (const Keyword& keyword : kKeywords)
    for (std::string_view rest = keyword.Prefixes; !rest.empty();) {
      const std::size_t end = std::min(rest.find(' '), rest.size());
      if (Find(rest.substr(0, end)) != &keyword) return false;
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  return true;
}

constexpr bool EveryLetterIsAKeyword() {
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    if (Find({&letter, 1}) == nullptr) return false;
  return true;
}

static_assert(EveryNameFindsItsKeyword() && EveryPrefixFindsItsKeyword() && EveryLetterIsAKeyword());

std::string_view MarkOf(const Keyword& keyword) {
  return keyword.OtherFormOf.empty() ? keyword.Name : keyword.OtherFormOf;
}

}  // namespace

std::span<const Keyword> Keywords() {
  return kKeywords;
}

const Keyword* FindKeyword(std::string_view text) {
  return Find(text);
}

bool HasKeyword(const SplitLine& line, std::string_view name) {
  const Keyword* const keyword = Find(line.Keyword);
  return keyword != nullptr && keyword->Name == name;
}

std::optional<SplitLine> NextBlockEntry(SpecContext& context, std::string_view name) {
  while (std::optional<SplitLine> line = context.Reader.NextBlockLine()) {
    if (!line->Keyword.empty() && !HasKeyword(*line, name)) {
      context.Reader.Unread();
      return {};
    }
    if (!line->NoValue()) return line;
  }
  return {};
}

void MarkAsSeen(SpecContext& context, const Keyword& keyword) {
  context.KeywordSeen.insert(MarkOf(keyword));
}

void ApplyKeyword(SpecContext& context, const SplitLine& line) {
  if (line.IsBlockEnd()) return;
  const std::string& text = context.Analysis.Input.LastLine;
  const Keyword* const keyword = Find(line.Keyword);
  if (keyword == nullptr) {
    context.Host.console.ShowMessage("Specification not understood: " + text);
    throw Halt{FailureCode::SpecificationExpected, {}};
  }
  if (keyword->Use != KeywordUse::Repeated && !context.KeywordSeen.insert(MarkOf(*keyword)).second) {
    context.Host.console.ShowMessage("Duplicate specification ignored: " + text);
    context.Analysis.SpecComments.push_back(text);
    return;
  }
  keyword->Apply(context, line);
}

}  // namespace tessaly
