#include "requests/graph_requests.h"

#include <cmath>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "graphs/curve_lines.h"
#include "graphs/curve_picture.h"
#include "graphs/graphs.h"
#include "graphs/wright_map.h"
#include "requests/request_output.h"
#include "requests/ruler_options.h"
#include "spec/file_names.h"
#include "support/bytes.h"
#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Analyses of fewer observations always have their data collected: it costs nothing, and the axis holds the data.
constexpr std::int64_t kFewObservations = 10000;
constexpr std::int32_t kNarrowestInterval = 200;
constexpr std::int32_t kMostSmoothing = 10;

bool HasEmpirical(GraphKind kind) {
  return kind == GraphKind::CategoryProbability || kind == GraphKind::ExpectedScore;
}

/// An option that belongs to some kinds only.
bool ForKind(std::string_view name, bool fits, std::string_view kinds, bool otherwise, const RequestOptions& options) {
  const bool wanted = options.YesNo(name, otherwise && fits);
  if (wanted && !fits)
    throw Refusal{std::string(name) + "= belongs to " + std::string(kinds) + ". Please leave it out"};
  return wanted;
}

CurveRequest ReadRequest(const RequestOptions& options) {
  CurveRequest request;
  const std::size_t kind = options
                               .Choice("kind", {"probability", "expected", "cumulative", "information",
                                                "categoryinformation", "conditional"})
                               .value_or(0);
  request.Kind = static_cast<GraphKind>(kind + 1);
  const bool expected = request.Kind == GraphKind::ExpectedScore;
  GraphSwitches& switches = request.Switches;
  switches.ShowModel = options.YesNo("model", true);
  switches.ShowEmpirical =
      ForKind("empirical", HasEmpirical(request.Kind), "kind=probability and kind=expected", false, options);
  const bool both = switches.ShowModel && switches.ShowEmpirical;
  switches.ShowConfidence = ForKind("confidence", expected, "kind=expected", both, options);
  switches.ShowZones = ForKind("zones", expected, "kind=expected", !switches.ShowEmpirical, options);
  switches.Flip = ForKind("flip", request.Kind == GraphKind::CumulativeProbability, "kind=cumulative", false, options);
  if (switches.ShowConfidence && !switches.ShowEmpirical)
    throw Refusal{"confidence= is a band around the empirical curve. Please add empirical=yes"};
  if (!switches.ShowModel && HasEmpirical(request.Kind) && !switches.ShowEmpirical && !switches.ShowZones)
    throw Refusal{"Graphs: nothing is left to draw. Please select model=yes or empirical=yes"};
  request.Interval = options.Number("interval");
  if (request.Interval && *request.Interval <= 0)
    throw Refusal{"interval= is the width of a bin. Please give a number above 0"};
  request.IntervalPosition = options.Whole("position", 1, kNarrowestInterval).value_or(kMiddleInterval);
  request.Smoothing = options.Whole("smoothing", 0, kMostSmoothing).value_or(0);
  return request;
}

/// The data of the curves, collected by one pass if no request has needed them yet; null if this one does not.
const EmpiricalData* DataFor(const CurveRequest& request, SessionState& session, RunControl& control,
                             Console& console) {
  const bool few = session.Run.Store.ValidResponses() < kFewObservations;
  if (!request.Switches.ShowEmpirical && !few) return nullptr;
  if (!session.Empirical)
    session.Empirical = CollectEmpiricalData(session.Run.Fit.LowestMeasure, session.Run.Fit.HighestMeasure, session.A,
                                             session.Run.Store, control, console);
  return &*session.Empirical;
}

/// The pictures of a request, one scale after the other.
class CurvePlots {
 public:
  CurvePlots(const RequestOptions& options, SessionState& session)
      : request_(ReadRequest(options)), x_(options.Range("x")), y_(options.Range("y")), session_(session) {
    if (const auto scales = options.Scales("scale")) {
      if (scales->empty()) throw Refusal{"Graphs: Please choose structure"};
      scales_ = *scales;
    } else {
      const auto count = static_cast<std::int32_t>(session.A.Scales.ScaleOrder.size());
      for (std::int32_t scale = 1; scale <= count; ++scale) scales_.push_back(scale);
    }
  }

  const std::vector<std::int32_t>& Scales() const { return scales_; }

  /// Reads the data if it must: call once, before the first plot.
  void Prepare(RunControl& control, Console& console) {
    graphs_.emplace(session_.A, session_.Run.Kernel, DataFor(request_, session_, control, console));
  }

  CurvePlot Plot(std::int32_t scale) {
    CurveRequest request = request_;
    request.Scale = scale;
    CurvePlot plot = graphs_->Plot(request);
    if (x_) std::tie(plot.X.ShownMin, plot.X.ShownMax) = *x_;
    if (y_) std::tie(plot.Y.ShownMin, plot.Y.ShownMax) = *y_;
    return plot;
  }

 private:
  CurveRequest request_;
  std::optional<std::pair<float, float>> x_;
  std::optional<std::pair<float, float>> y_;
  SessionState& session_;
  std::vector<std::int32_t> scales_;
  std::optional<Graphs> graphs_;
};

std::string UnitText(const Settings& settings) {
  if (settings.Uscale == 1.0F) return "logits";
  return "user units: 1 logit = " + BareText(std::fabs(settings.Uscale));
}

/// "icc.svg" becomes "icc.2.svg" where there are pictures of several scales.
std::string NameOfScale(const std::string& name, std::int32_t scale) {
  const std::size_t extension = name.size() - ExtensionOf(name).size();
  return name.substr(0, extension) + "." + BareText(scale) + name.substr(extension);
}

void WritePictures(const RequestOutput& output, const std::string& name, JoinMode join, CurvePlots& plots,
                   SessionState& session) {
  RunControl control(session.Host.user);
  plots.Prepare(control, session.Host.console);
  const bool several = plots.Scales().size() > 1;
  std::vector<std::string> names;
  for (const std::int32_t scale : plots.Scales()) {
    names.push_back(several ? NameOfScale(name, scale) : name);
    output.RefuseTaken(names.back());
  }
  for (std::size_t at = 0; at < names.size(); ++at) {
    output.LinesOf(names[at], "Graph", [&](TextOutput& file, RunControl&, Console&) {
      file.WriteLine(CurvePicture(plots.Plot(plots.Scales()[at]), join, UnitText(session.A.Settings)));
    });
  }
}

}  // namespace

void RequestCurves(SessionState& session, const RequestOptions& options) {
  const RequestOutput output(options, session);
  CurvePlots plots(options, session);
  constexpr JoinMode kJoinModes[] = {JoinMode::Both, JoinMode::Lines, JoinMode::Points, JoinMode::None};
  const JoinMode join = kJoinModes[options.Choice("join", {"both", "lines", "points", "none"}).value_or(0)];
  const std::string name = options.Text("file").value_or("");
  if (ExtensionOf(name) == ".svg") return WritePictures(output, output.Name("Graph", ".svg"), join, plots, session);
  output.Lines(
      "Graph", "Graph",
      [&](TextOutput& file, RunControl& control, Console& console) {
        plots.Prepare(control, console);
        WriteCurveHeading(file);
        for (const std::int32_t scale : plots.Scales()) WriteCurveLines(plots.Plot(scale), file);
      },
      ".csv");
}

void RequestRuler(SessionState& session, const RequestOptions& options) {
  Settings& settings = session.A.Settings;
  ReadRulerOptions(options, settings);
  const RequestOutput output(options, session);
  output.Lines(
      "Ruler", "Vertical ruler",
      [&](TextOutput& file, RunControl&, Console&) {
        file.WriteLine(WrightMap(settings.VerticalSpec, settings.YardstickSpec, session.A, session.Run.Kernel));
      },
      ".svg");
}

}  // namespace tessaly
