#include "requests/verbs.h"

#include <algorithm>

#include "requests/bias_request.h"
#include "requests/file_requests.h"
#include "requests/graph_requests.h"
#include "requests/modify_request.h"
#include "requests/table_requests.h"

namespace tessaly {

namespace {

using Kind = ValueKind;

constexpr std::string_view kYesNo = "yes|no";
constexpr std::string_view kFacets = "numbers or labels of facets";
constexpr std::string_view kOrders = "measure,number,label,fit";
constexpr std::string_view kDirections = "ascend,descend";

const OptionInfo kFile = {"file", "file name", "Writes a file that stays", Kind::File};
const OptionInfo kTo = {"to", "screen|temporary",
                        "In place of file=: temporary for a file that goes when the program ends. Default: screen",
                        Kind::Words};
const OptionInfo kSeparator = {"separator", "fixed|tab|comma|semicolon",
                               "Between fields; another character stands for itself. Default: CSV=", Kind::Words};
const OptionInfo kHeadings = {"headings", kYesNo, "Heading lines. Default: Heading lines=", Kind::Words};
const OptionInfo kQuote = {"quote", "none|double-quotes|apostrophes",
                           "Around labels; another character stands for itself. Default: QM=", Kind::Words};
const OptionInfo kFields = {"fields", "all or names of fields",
                            "Fields of the file, with commas between them. Default: those of the settings"};
const OptionInfo kDefault = {"default", kYesNo, "Keeps fields= in the settings file for later runs. Default: no",
                             Kind::Words};

std::vector<OptionInfo> WithDestination(std::vector<OptionInfo> options) {
  options.push_back(kFile);
  options.push_back(kTo);
  return options;
}

std::vector<Verb> MakeVerbs() {
  return {
      {"table4", "Table 4", "Unexpected responses",
       WithDestination({{"unexpected", "number", "Least size of a standardized residual. Default: Unexpected="},
                        {"usort", "orders", "As Usort= has them. Default: Usort="},
                        {"t4maximum", "whole number", "Most responses that are listed. Default: T4maximum="}}),
       RequestTable4},
      {"table5", "Table 5", "Measurable data summary", WithDestination({}), RequestTable5},
      {"table6", "Table 6", "Vertical rulers and barcharts of the facets",
       WithDestination(
           {{"vertical", "columns", "As Vertical= has them. Default: Vertical="},
            {"yardstick", "dimensions", "As Yardstick= has them. Default: Yardstick="},
            {"extremes", "ends|measure", "Where extreme elements stand. Default: as yardstick= says", Kind::Words},
            {"barchart", "yes|no|all", "Barcharts of the facets. Default: Barchart=", Kind::Words},
            {"subsetreport", kYesNo, "Rulers of disjoint subsets. Default: Subsets=", Kind::Words},
            {"unobserved", kYesNo,
             "Anchored elements without observations too. Default: Omit-unobserved=", Kind::Words}}),
       RequestTable6},
      {"table7", "Table 7", "Measures",
       WithDestination(
           {{"facets", kFacets, "Default: all", Kind::Facets},
            {"order", kOrders, "One table for each. Without order= and direction=: as Arrange= says", Kind::Words},
            {"direction", kDirections, "One table for each", Kind::Words},
            {"unobserved", kYesNo, "Elements without observations too. Default: Omit-unobserved=", Kind::Words}}),
       RequestTable7},
      {"table8", "Table 8", "Rating (or partial credit) scale structures",
       WithDestination({{"scales", "numbers of scales", "As Table 8 numbers them. Default: all", Kind::Scales},
                        {"numbers", kYesNo, "The table of categories. Default: T8NBC=", Kind::Words},
                        {"barcharts", kYesNo, "The bars of the structure. Default: T8NBC=", Kind::Words},
                        {"curves", kYesNo, "The probability curves. Default: T8NBC=", Kind::Words}}),
       RequestTable8},
      {"bias", "Bias/Interaction", "Tables 9 to 14 of an interaction, from a new bias run",
       WithDestination(
           {{"upper", "a facet", "Without upper= and lower=: the interactions that the model statements mark with B",
             Kind::Facets},
            {"lower", "a facet", "The other facet", Kind::Facets},
            {"order", kOrders, "Of Tables 13 and 14. Without order= and direction=: as Arrange= says", Kind::Words},
            {"direction", kDirections, "One table for each", Kind::Words},
            {"barchart", kYesNo, "Table 12. Default: yes", Kind::Words},
            {"table13", kYesNo, "Table 13. Default: yes", Kind::Words},
            {"table14", kYesNo, "Table 14. Default: yes", Kind::Words},
            {"plotfile", "file name", "Takes the figures of plot13= and plot14=, with tabs between them", Kind::File},
            {"plot13", kYesNo, "Measures, averages and t of the terms into the plot file. Default: yes", Kind::Words},
            {"plot14", kYesNo, "Contrasts of pairs and their t into the plot file. Default: no", Kind::Words},
            {"zsize", "number", "Least size of a reported bias. Default: Zscore="},
            {"zsig", "number", "Least t of a reported bias. Default: Zscore="},
            {"iterations", kYesNo, "The iterations in Table 9. Default: Write=", Kind::Words},
            {"sign", "plus|minus", "Whether a higher score is a higher bias. Default: Bias=", Kind::Words}}),
       RequestBias},
      {"anchorfile", "Anchorfile", "A specification with the estimates as anchors",
       WithDestination({{"flag", kYesNo, "Anchors; no: starting values. Default: yes", Kind::Words},
                        {"data", kYesNo, "Data that stand in the specification are copied. Default: yes", Kind::Words},
                        {"current", kYesNo,
                         "The settings in force in place of the lines of the specification. "
                         "Default: no",
                         Kind::Words}}),
       RequestAnchorFile},
      {"graphfile", "Graph output file", "Category curves of every scale as numbers",
       WithDestination({kSeparator, kHeadings, kQuote}), RequestGraphFile},
      {"residualfile", "Residual output file", "Each observation with its expectation and residual",
       WithDestination({{"used", kYesNo, "Observations that the estimates rest on. Default: yes", Kind::Words},
                        {"unused", kYesNo, "The others. Default: no", Kind::Words},
                        kFields,
                        {"decimals", "0 to 9", "Decimal places. Default: those of the settings"},
                        kDefault,
                        kSeparator,
                        kHeadings,
                        kQuote}),
       RequestResidualFile},
      {"scorefile", "Score file", "The figures of the elements, one file for each facet",
       WithDestination(
           {{"facets", kFacets, "Default: all", Kind::Facets},
            kFields,
            kDefault,
            {"unobserved", kYesNo, "Elements without observations too. Default: Omit-unobserved=", Kind::Words},
            kSeparator,
            kHeadings,
            kQuote}),
       RequestScoreFile},
      {"simulated", "Simulated data file", "Responses drawn at random from the model",
       WithDestination(
           {{"structure", "match|complete",
             "match: one for each observation; complete: every combination of elements. Default: match", Kind::Words},
            {"seed", "0 to 2147483646", "Starts the random numbers. Default: Seed= or the clock"}}),
       RequestSimulated},
      {"settings", "Specification settings", "Every setting in force, as a specification has it", WithDestination({}),
       RequestSettings},
      {"subsetfile", "Subset group-anchor file", "Labels= that anchor disjoint subsets as groups", WithDestination({}),
       RequestSubsetFile},
      {"zandrel", "Zandrel control & data", "Control and data file for the two-facet program Zandrel",
       WithDestination(
           {{"rows", kFacets, "Facets of the rows", Kind::Facets},
            {"columns", kFacets, "Facets of the columns", Kind::Facets},
            {"rowanchor", kYesNo, "Anchor values of the rows. Default: no", Kind::Words},
            {"columnanchor", kYesNo, "Anchor values of the columns. Default: no", Kind::Words},
            {"structureanchor", kYesNo, "Anchor values of the rating scale. Default: no", Kind::Words},
            {"data", "first|last|sum|none|unstated",
             "Which of the responses of a cell is written; none: no data. Default: unstated, the first, without "
             "a comment that says so",
             Kind::Words}}),
       RequestZandrel},
      {"curves", "Graphs", "Curves of a rating scale: numbers, or a picture if the file's name ends in .svg",
       WithDestination(
           {{"kind", "probability|expected|cumulative|information|categoryinformation|conditional",
             "Default: probability", Kind::Words},
            {"scale", "numbers of scales", "As Table 8 numbers them. Default: all", Kind::Scales},
            {"model", kYesNo, "The curves of the model. Default: yes", Kind::Words},
            {"empirical", kYesNo, "The observed curves (kinds probability and expected). Default: no", Kind::Words},
            {"confidence", kYesNo, "The 95% band (kind expected). Default: with model and empirical curves",
             Kind::Words},
            {"zones", kYesNo, "The half-score zones (kind expected). Default: without empirical curves", Kind::Words},
            {"flip", kYesNo, "Curves of a category and above (kind cumulative). Default: no", Kind::Words},
            {"interval", "number", "Width of the empirical bins in user units. Default: by position="},
            {"position", "1 to 200", "The same from the widest to the narrowest. Default: 100"},
            {"smoothing", "0 to 10", "Of the empirical curves. Default: 0"},
            {"join", "both|lines|points|none", "How a picture draws empirical curves. Default: both", Kind::Words},
            {"x", "low,high", "The part of the x-axis that a picture shows, in user units"},
            {"y", "low,high", "The part of the y-axis"}}),
       RequestCurves},
      {"ruler", "Vertical ruler", "The measures of all facets as a picture (a Wright map), a file named .svg",
       WithDestination(
           {{"vertical", "columns", "As Vertical= has them. Default: Vertical="},
            {"yardstick", "dimensions", "As Yardstick= has them. Default: Yardstick="},
            {"extremes", "ends|measure", "Where extreme elements stand. Default: as yardstick= says", Kind::Words}}),
       RequestRuler},
      {"modify",
       "Modify Output Specifications",
       "Changes settings for all requests to come; no measure changes",
       {{"title", "text", "Heading line on each output table"},
        {"juxtapose", "whole number", "Column headings after this many lines; 0 for no intermediate headings"},
        {"umean", "number", "Mean of centered measures"},
        {"uscale", "number above 0", "User-scaled units per logit"},
        {"udecim", "0 to 9", "Decimal places of measures"},
        {"ascii", "yes|no|webpage", "Form of the tables", Kind::Words},
        {"box", kYesNo, "Boxes around tables", Kind::Words},
        {"lefthand", kYesNo, "Row labels on the left", Kind::Words},
        {"totalscore", kYesNo, "Scores include extreme responses", Kind::Words},
        {"se", "real|model", "Standard errors", Kind::Words},
        {"positive", "numbers of facets", "Shown as positively oriented"},
        {"negative", "numbers of facets", "Shown as negatively oriented; rules over positive="}},
       RequestModify},
  };
}

}  // namespace

std::span<const Verb> Verbs() {
  static const std::vector<Verb> verbs = MakeVerbs();
  return verbs;
}

const Verb* FindVerb(std::string_view name) {
  const std::span<const Verb> verbs = Verbs();
  const auto found = std::find_if(verbs.begin(), verbs.end(), [&](const Verb& verb) { return verb.Name == name; });
  return found == verbs.end() ? nullptr : &*found;
}

std::vector<std::string_view> VerbNames() {
  std::vector<std::string_view> names;
  for (const Verb& verb : Verbs()) names.push_back(verb.Name);
  return names;
}

std::vector<std::string_view> OptionNames(const Verb& verb) {
  std::vector<std::string_view> names;
  for (const OptionInfo& option : verb.Options) names.push_back(option.Name);
  return names;
}

}  // namespace tessaly
