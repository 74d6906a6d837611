#include "requests/file_requests.h"

#include <algorithm>
#include <string>
#include <vector>

#include "output/anchor_file.h"
#include "output/graph_file.h"
#include "output/residual_file.h"
#include "output/score_file.h"
#include "output/settings_lines.h"
#include "output/simulated_data.h"
#include "output/subset_anchor_file.h"
#include "output/two_facet_file.h"
#include "requests/output_fields.h"
#include "requests/request_output.h"
#include "run/random_seed.h"
#include "spec/named_marks.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// separator=, headings= and quote=.
void ReadSeparators(const RequestOptions& options, Settings& settings) {
  if (const auto separator = options.Text("separator")) settings.CsvDelimiter = DelimiterOf(*separator);
  if (const auto quote = options.Text("quote")) settings.QuoteMark = QuoteMarkOf(*quote);
  settings.HeadingLinesOption = options.YesNo("headings", settings.HeadingLinesOption);
}

std::int32_t SeedOf(const RequestOptions& options, SessionState& session) {
  const auto seed = options.Whole("seed", 0, kHighestSeed);
  return seed ? *seed : RandomSeed(session.A.Settings, session.Host.clock);
}

ResidualRows RowsOf(const RequestOptions& options) {
  const bool used = options.YesNo("used", true);
  const bool unused = options.YesNo("unused", false);
  if (!used && !unused) throw Refusal{"Residual output file: Please select used or unused observations"};
  return used && unused ? ResidualRows::All : used ? ResidualRows::Used : ResidualRows::Unused;
}

/// "scores.txt" becomes "scores.2.txt". Empty for the screen.
std::string FileOfFacet(FacetNumber facet, const RequestOutput& output) {
  constexpr std::string_view kEnding = ".txt";
  const std::string ending = "." + BareText(facet.value) + std::string(kEnding);
  std::string name = output.Name("Score files", ending);
  if (output.ToScreen() || output.Temporary()) return name;
  if (LowerAscii(name).ends_with(kEnding)) name.resize(name.size() - kEnding.size());
  return name + ending;
}

std::vector<FacetNumber> ZandrelFacets(std::string_view option, std::string_view list, const RequestOptions& options) {
  auto facets = options.Facets(option);
  if (!facets || facets->empty())
    throw Refusal{"Zandrel control & data: Please check a Facet in " + std::string(list) + " list"};
  return std::move(*facets);
}

/// The letters that say what a Zandrel file holds.
std::string Letters(const ZandrelRequest& request) {
  constexpr std::string_view kRepeats = " FLT";
  std::string letters;
  if (request.Repeats != RepeatRule::Unstated) letters += kRepeats[static_cast<std::size_t>(request.Repeats)];
  if (request.AnchorScale) letters += 'S';
  if (request.AnchorColumns) letters += 'C';
  if (request.AnchorRows) letters += 'R';
  if (!request.Data) letters += 'N';
  return letters;
}

}  // namespace

void RequestAnchorFile(SessionState& session, const RequestOptions& options) {
  const RequestOutput output(options, session);
  AnchorRequest request;
  request.FlagAsAnchors = options.YesNo("flag", true);
  request.IncludeData = options.YesNo("data", true);
  request.CurrentSettings = options.YesNo("current", false);
  request.ExtraSpecs = session.Run.ExtraSpecs;
  const std::string letters = std::string(request.FlagAsAnchors ? "A" : " ") + (request.IncludeData ? "A" : " ") +
                              (request.CurrentSettings ? "C" : "");
  output.Lines("Anc", "Anchorfile (" + letters + ")", [&](TextOutput& file, RunControl&, Console& console) {
    WriteAnchorFile(request, session.A, console, file);
  });
}

void RequestGraphFile(SessionState& session, const RequestOptions& options) {
  const RequestOutput output(options, session);
  ReadSeparators(options, session.A.Settings);
  output.Lines("Gr", "Graph output file", [&](TextOutput& file, RunControl&, Console&) {
    WriteGraphFile(kGraphDecimals, session.A, session.Run.Kernel, file);
  });
}

void RequestResidualFile(SessionState& session, const RequestOptions& options) {
  const RequestOutput output(options, session, RequestOutput::Workbooks::AsText);
  ReadSeparators(options, session.A.Settings);
  const ResidualRows rows = RowsOf(options);
  ReadResponseFields(options, session);
  output.Lines("Re", "Residual output file", [&](TextOutput& file, RunControl& control, Console& console) {
    WriteResidualFile(rows, output.Labels(), session.A, session.Run.Store, session.Run.Kernel, control, console, file);
  });
}

void RequestScoreFile(SessionState& session, const RequestOptions& options) {
  Settings& settings = session.A.Settings;
  const RequestOutput output(options, session, RequestOutput::Workbooks::AsText);
  const std::vector<FacetNumber> facets = options.FacetsOrAll("facets");
  if (facets.empty()) throw Refusal{"Score file: Please check Facet"};
  ReadSeparators(options, settings);
  settings.OmitUnobserved = !options.YesNo("unobserved", !settings.OmitUnobserved);
  ReadScoreFields(options, session);
  std::vector<std::string> names;
  for (const FacetNumber facet : facets) {
    names.push_back(FileOfFacet(facet, output));
    output.RefuseTaken(names.back());
  }
  for (std::size_t at = 0; at < facets.size(); ++at) {
    output.LinesOf(
        names[at], "Score File (" + session.A.Facets[facets[at]].FacetLabel + ")",
        [&](TextOutput& file, RunControl&, Console&) { WriteScoreFile(facets[at], output.Labels(), session.A, file); });
  }
}

void RequestSimulated(SessionState& session, const RequestOptions& options) {
  const RequestOutput output(options, session);
  const bool match = options.Choice("structure", {"match", "complete"}).value_or(0) == 0;
  const std::int32_t seed = SeedOf(options, session);
  output.Lines("Simulated data", "Simulated data file", [&](TextOutput& file, RunControl& control, Console& console) {
    WriteSimulatedData(match, seed, session.A, session.Run.Store, session.Run.Kernel, control, console, file);
  });
}

void RequestSettings(SessionState& session, const RequestOptions& options) {
  RequestOutput(options, session)
      .Lines("SpecOut", "Specifications Settings",
             [&](TextOutput& file, RunControl&, Console&) { WriteSettings(session.A, file); });
}

void RequestSubsetFile(SessionState& session, const RequestOptions& options) {
  RequestOutput(options, session)
      .Lines("Subset", "Subset group-anchor file",
             [&](TextOutput& file, RunControl&, Console& console) { WriteSubsetAnchorFile(session.A, console, file); });
}

void RequestZandrel(SessionState& session, const RequestOptions& options) {
  constexpr std::size_t kNoData = 3;
  const RequestOutput output(options, session);
  ZandrelRequest request;
  request.RowFacets = ZandrelFacets("rows", "upper", options);
  request.ColumnFacets = ZandrelFacets("columns", "lower", options);
  for (const FacetNumber facet : request.RowFacets)
    if (std::binary_search(request.ColumnFacets.begin(), request.ColumnFacets.end(), facet))
      throw Refusal{"Zandrel control & data: Please check different facets in upper and lower list"};
  request.AnchorRows = options.YesNo("rowanchor", false);
  request.AnchorColumns = options.YesNo("columnanchor", false);
  request.AnchorScale = options.YesNo("structureanchor", false);
  if (const auto data = options.Choice("data", {"first", "last", "sum", "none", "unstated"})) {
    constexpr RepeatRule kRules[] = {RepeatRule::First, RepeatRule::Last, RepeatRule::Sum, RepeatRule::Unstated,
                                     RepeatRule::Unstated};
    request.Repeats = kRules[*data];
    request.Data = *data != kNoData;
  }
  output.Lines("Zandrel", "Zandrel control & data (" + Letters(request) + ")",
               [&](TextOutput& file, RunControl& control, Console& console) {
                 WriteZandrelFile(request, session.A, session.Run.Store, control, console, file);
               });
}

}  // namespace tessaly
