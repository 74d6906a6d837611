#include "requests/bias_request.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "interaction/bias_facets.h"
#include "requests/arrange_option.h"
#include "requests/request_output.h"
#include "run/bias_runs.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/file_identity.h"

namespace tessaly {

namespace {

constexpr std::string_view kTitle = "Bias/Interaction";

[[noreturn]] void Refuse(std::string_view text) {
  throw Refusal{std::string(kTitle) + ": " + std::string(text)};
}

FacetNumber OneFacet(std::string_view name, const RequestOptions& options) {
  const auto facets = options.Facets(name);
  const std::string list = std::string(name) + " list";
  if (!facets || facets->empty()) Refuse("Please check a Facet in " + list);
  if (facets->size() > 1) Refuse("Please check one Facet only in " + list);
  return facets->front();
}

/// The number of the run that the analysis has made for these facets, or the one behind those of all model statements.
std::int32_t NumberOf(const std::vector<FacetNumber>& facets, const Analysis& analysis) {
  for (const BiasRequest& made : BiasRequests(analysis.Models, analysis.Fields))
    if (made.BiasFacets == facets) return made.Statement.value + 1;
  return analysis.Models.Statements.size() + 1;
}

bool InData(FacetNumber facet, const FieldMap& fields) {
  return std::any_of(fields.Positions.begin(), fields.Positions.end(),
                     [&](const ActivePosition& position) { return position.PositionFacet == facet; });
}

BiasRunRequest PairOf(const RequestOptions& options, const Analysis& analysis) {
  BiasRunRequest run;
  const FacetNumber upper = OneFacet("upper", options);
  const FacetNumber lower = OneFacet("lower", options);
  if (upper == lower) Refuse("Please check different facets in upper and lower list");
  run.Facets = {std::min(upper, lower), std::max(upper, lower)};
  for (const FacetNumber facet : run.Facets) {
    if (!InData(facet, analysis.Fields))
      Refuse("Facet " + analysis.Facets[facet].FacetLabel + " is not in the data. Please check another Facet");
  }
  run.Number = NumberOf(run.Facets, analysis);
  return run;
}

std::vector<BiasRunRequest> RunsOf(const RequestOptions& options, const Analysis& analysis) {
  if (options.Given("upper") || options.Given("lower")) return {PairOf(options, analysis)};
  std::vector<BiasRunRequest> runs;
  for (const BiasRequest& made : BiasRequests(analysis.Models, analysis.Fields)) {
    BiasRunRequest& run = runs.emplace_back();
    run.Number = made.Statement.value + 1;
    run.Facets = made.BiasFacets;
  }
  if (runs.empty()) Refuse("Please check a Facet in upper list");
  return runs;
}

std::string ArrangementOf(const RequestOptions& options, const Settings& settings) {
  if (GivesOrder(options)) return Joined(OrderCodes(kTitle, options), ",");
  return settings.ArrangeSpec.empty() ? "N" : settings.ArrangeSpec;
}

/// "12" for an interaction of facets 1 and 2, as far as there are runs.
std::string Selection(const std::vector<BiasRunRequest>& runs, std::int32_t facetCount) {
  std::vector<std::string> selections;
  for (const BiasRunRequest& run : runs) {
    std::string marks(static_cast<std::size_t>(facetCount), '0');
    char mark = '1';
    for (const FacetNumber facet : run.Facets) marks[static_cast<std::size_t>(facet.value - 1)] = mark++;
    selections.push_back(marks);
  }
  return Joined(selections, ",");
}

void ReadSettings(const RequestOptions& options, Settings& settings) {
  // A request asks for what the specification may have switched off.
  settings.TablesOption = "Y";
  if (settings.BiasDirection == BiasDirection::Omit) settings.BiasDirection = BiasDirection::Plus;
  if (const auto sign = options.Choice("sign", {"plus", "minus"}))
    settings.BiasDirection = *sign == 0 ? BiasDirection::Plus : BiasDirection::Minus;
  if (const auto size = options.Number("zsize")) settings.ZscoreSize = *size;
  if (const auto t = options.Number("zsig")) settings.ZscoreT = *t;
  settings.WriteIterations = options.YesNo("iterations", settings.WriteIterations);
}

/// The plot file as an output of its own.
class PlotFile {
 public:
  PlotFile(const RequestOptions& options, const RequestOutput& output, SessionState& session)
      : sheets_{options.YesNo("plot13", true), options.YesNo("plot14", false)},
        output_(output),
        clock_(session.Host.clock) {
    const auto name = options.Text("plotfile");
    const bool anySheet = sheets_.Terms || sheets_.Pairs;
    if (!name && (options.Given("plot13") || options.Given("plot14")) && anySheet)
      Refuse("the plots of plot13= and plot14= need a file. Please add plotfile=NAME");
    if (!name) return;
    if (name->empty()) Refuse("plotfile= has no name. Please give the name of a file");
    if (!anySheet) Refuse("nothing is left for plotfile=. Please select plot13=yes or plot14=yes");
    name_ = Replaced(*name, '\\', '/');
    output.RefuseTaken(name_);
    if (SameFile(name_, Replaced(options.Text("file").value_or(""), '\\', '/')))
      Refuse("plotfile= and file= name the same file. Please give each a name of its own");
  }

  bool Wanted() const { return !name_.empty(); }

  void WriteInto(std::vector<BiasRunRequest>& runs, const std::function<void()>& makeRuns) const {
    std::optional<TextOutput> file;
    output_.Attempt(name_, [&] { file.emplace(name_); });
    for (BiasRunRequest& run : runs) {
      run.Plots = sheets_;
      run.PlotFile = &*file;
      run.RunDate = clock_.RunDate();
    }
    makeRuns();
    output_.Attempt(name_, [&] { file->Close(); });
    output_.Written(name_, "Bias/Interaction plots");
  }

 private:
  BiasPlotSheets sheets_;
  const RequestOutput& output_;
  Clock& clock_;
  std::string name_;
};

}  // namespace

void RequestBias(SessionState& session, const RequestOptions& options) {
  Analysis& analysis = session.A;
  std::vector<BiasRunRequest> runs = RunsOf(options, analysis);
  const std::string arrange = ArrangementOf(options, analysis.Settings);
  for (BiasRunRequest& run : runs) {
    run.Arrange = arrange;
    run.BiasTable12On = options.YesNo("barchart", true);
    run.BiasTable13On = options.YesNo("table13", true);
    run.BiasTable14On = options.YesNo("table14", true);
  }
  ReadSettings(options, analysis.Settings);
  const RequestOutput output(options, session);
  const PlotFile plots(options, output, session);
  const auto makeRuns = [&] {
    output.Tables("Bias", "Bias/Interaction (" + Selection(runs, analysis.FacetCount()) + ")",
                  [&](ReportWriter& report, RunControl& control, Console& console) {
                    const BiasContext context{
                        analysis, session.Run.Store, session.Run.Kernel, session.Run.Fit, report, control, console};
                    for (const BiasRunRequest& run : runs) RunBias(context, run);
                  });
  };
  if (plots.Wanted()) {
    plots.WriteInto(runs, makeRuns);
  } else {
    makeRuns();
  }
}

}  // namespace tessaly
