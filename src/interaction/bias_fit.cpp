#include "interaction/bias_fit.h"

#include <algorithm>
#include <cmath>

#include "data/observation_pass.h"
#include "estimate/observation_fit.h"
#include "estimate/standardize.h"

namespace tessaly {

namespace {

constexpr float kLargestT = 99.99F;

/// Sums over the responses of a term. y is the residual, z the standardized residual, V the variance.
struct TermSums {
  /// Sums of w V, of w y y and of its variance term, of w z z.
  float Information = 0;
  float ResidualSquares = 0;
  float ResidualVariance = 0;
  float ResidualSquaresZ = 0;
  /// Sum of w times the kurtosis ratio.
  double Kurtosis = 0;

  void Add(float w, const ResponseMoments& m) {
    Information += w * m.ResponseVariance;
    ResidualSquaresZ += w * m.ResidualSquareZ;
    ResidualSquares += w * m.ResidualSquare;
    Kurtosis += static_cast<double>(w * m.KurtosisRatio);
    ResidualVariance += w * m.ResidualVarianceTerm;
  }
};

void Finish(const TermSums& sums, const Settings& settings, BiasTerm& term) {
  term.InfitMeanSquare = Standardize(sums.Information, static_cast<double>(sums.ResidualVariance), sums.ResidualSquares,
                                     settings.Whexact, settings.SmallestNumber)
                             .MeanSquare;
  term.OutfitMeanSquare = Standardize(term.CountSum, sums.Kurtosis - static_cast<double>(term.CountSum),
                                      sums.ResidualSquaresZ, settings.Whexact, settings.SmallestNumber)
                              .MeanSquare;
  if (!(sums.Information > settings.SmallestNumber)) return;
  term.StandardError = static_cast<float>(std::sqrt(1.0 / static_cast<double>(sums.Information)));
  term.TStatistic = std::clamp(term.BiasSize / term.StandardError, -kLargestT, kLargestT);
}

}  // namespace

void FitBiasTerms(const ObservationTerms& finder, const Analysis& analysis, ObservationStore& store,
                  ResponseKernel& kernel, RunControl& control, Console& console, BiasTerms& terms) {
  Table<TermIndex, TermSums> sums(terms.Terms.size());
  for (const Observation& obs : ObservationPass(store, analysis, control, console)) {
    const TermIndex term = finder.TermOf(obs);
    if (term.value == 0) continue;
    const ObservationFit fit = FitAt(obs, obs.MeasureSum + terms.Terms[term].BiasSize, analysis.Scales, kernel);
    sums[term].Add(obs.ObsWeight, fit.Moments);
    terms.Fit.AddToSummary(obs, fit);
  }
  for (const TermIndex term : terms.Terms.all())
    if (terms.Terms[term].Estimable()) Finish(sums[term], analysis.Settings, terms.Terms[term]);
}

}  // namespace tessaly
