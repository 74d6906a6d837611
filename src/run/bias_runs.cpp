#include "run/bias_runs.h"

#include <algorithm>
#include <array>
#include <utility>

#include "interaction/bias_estimation.h"
#include "interaction/bias_facets.h"
#include "interaction/bias_fit.h"
#include "interaction/bias_terms.h"
#include "interaction/observation_terms.h"
#include "reports/table11_bias_summary.h"
#include "reports/table12_bias_barcharts.h"
#include "reports/table13_bias_report.h"
#include "reports/table14_bias_pairs.h"
#include "reports/table9_bias_iterations.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

constexpr std::array kBiasTables = {9, 10, 11, 12, 13, 14};

/// One run.
class BiasRun {
 public:
  BiasRun(const BiasContext& context, const BiasRunRequest& request)
      : context_(context),
        request_(request),
        number_(request.Number),
        terms_(request.Facets, context.A.Facets),
        finder_(terms_, context.A.Fields) {}

  void Run() {
    const auto& [analysis, store, kernel, fit, report, control, console] = context_;
    // A request that came during the tables had nothing to finish.
    control.FastForward = false;
    report.SelectTable(9);
    BiasIterationTable table9(number_, terms_, analysis, report, console);
    if (!BiasEstimation(terms_, finder_, analysis, store, kernel, control, console, table9).Run()) return;
    console.ShowMessage("Calculating Bias fit statistics");
    FitBiasTerms(finder_, analysis, store, kernel, control, console, terms_);
    WriteTables();
  }

 private:
  void WriteTables() {
    const auto& [analysis, store, kernel, fit, report, control, console] = context_;
    const std::string& arrange = request_.Arrange;
    if (Select(11)) BiasSummaryTable(number_, terms_, fit, analysis.Settings, report, console);
    if (request_.BiasTable12On && Select(12)) BiasBarcharts(number_, terms_, analysis.Settings, report, console);
    std::int32_t tables13 = 0;
    if (request_.BiasTable13On && Select(13))
      tables13 = BiasReport(number_, arrange, terms_, analysis, report, control, console);
    if (request_.BiasTable14On && Select(14))
      BiasPairwise(number_, tables13, arrange, terms_, analysis, report, control, console);
    if (request_.PlotFile != nullptr)
      BiasPlotFile(terms_, request_.Plots, analysis, request_.RunDate, *request_.PlotFile, console);
  }

  bool Select(int table) const {
    context_.Report.SelectTable(table);
    return context_.Report.Wants(table);
  }

  const BiasContext& context_;
  const BiasRunRequest& request_;
  std::int32_t number_;
  BiasTerms terms_;
  ObservationTerms finder_;
};

}  // namespace

void RunBias(const BiasContext& context, const BiasRunRequest& request) {
  if (!CombinationsCanBeNumbered(request.Facets, context.A.Facets)) {
    context.Screen.ShowWarning(
        "The elements of the bias facets have too many combinations to be numbered: no bias "
        "analysis for model statement" +
        GeneralText(request.Number));
    return;
  }
  const Phase before = std::exchange(context.Control.Phase, Phase::Bias);
  BiasRun(context, request).Run();
  context.Control.Phase = before;
}

void BiasRuns(const BiasContext& context) {
  const Analysis& analysis = context.A;
  if (analysis.Settings.BiasDirection == BiasDirection::Omit || analysis.Settings.ArrangeSpec.empty()) return;
  const auto wanted = [&](int table) { return context.Report.Wants(table); };
  if (std::none_of(kBiasTables.begin(), kBiasTables.end(), wanted)) return;
  for (const BiasRequest& marked : BiasRequests(analysis.Models, analysis.Fields)) {
    BiasRunRequest request;
    request.Number = marked.Statement.value + 1;
    request.Facets = marked.BiasFacets;
    request.Arrange = analysis.Settings.ArrangeSpec;
    RunBias(context, request);
  }
}

}  // namespace tessaly
