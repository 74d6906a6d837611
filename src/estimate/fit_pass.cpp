#include "estimate/fit_pass.h"

#include <algorithm>
#include <cmath>

#include "data/observation_pass.h"
#include "estimate/fair_score.h"
#include "estimate/observation_fit.h"
#include "estimate/standardize.h"

namespace tessaly {

namespace {

constexpr float kLargestLogOdds = 100.0F;
constexpr float kLargestDiscrimination = 10.0F;
constexpr float kLeastLogOddsVariance = 1e-10F;

}  // namespace

FitPass::FitPass(Analysis& analysis, ObservationStore& store, ResponseKernel& kernel, RunControl& control,
                 Console& console)
    : analysis_(analysis),
      store_(store),
      kernel_(kernel),
      control_(control),
      console_(console),
      unexpected_(analysis.Settings.UnexpectedMin, analysis.Settings.T4Max) {}

void FitPass::Run() {
  PrepareScaleTables();
  PrepareFacets();
  CountParameters();
  sums_.assign(analysis_.Elements.ElementCount(), {});
  correlations_.assign(analysis_.Elements.ElementCount(), {});
  if (!analysis_.Settings.Esubtotals.empty())
    crossReference_.emplace(analysis_.Elements.ElementCount(), analysis_.FacetCount(), analysis_.Fields);
  const FacetMeans means = analysis_.Settings.FairOption == 'M' ? FacetMeans::TakeOff : FacetMeans::Leave;
  for (const Observation& obs : ObservationPass(store_, analysis_, control_, console_, means)) {
    if (crossReference_) crossReference_->Add(obs);
    data_.ResponsesByStatus[DataFit::Row(obs.Status)].Add(obs.ObsResponse);
    if (TakesPart(obs.Status)) Add(obs);
  }
}

void FitPass::PrepareScaleTables() {
  ScaleTables& scales = analysis_.Scales;
  for (const ScaleNumber scale : scales.Scales.all()) {
    const bool ratingScale =
        analysis_.Models.Statements[scales.Scales[scale].ScaleModel].ModelType == ModelType::RatingScale;
    for (std::int32_t k = 0; k <= scales.TopCategory; ++k) {
      scales.CategoryExpected(scale, k) = 0;
      if (ratingScale) scales.CategoryInformation(scale, k) = 0;
    }
  }
}

void FitPass::PrepareFacets() {
  const ElementTable& elements = analysis_.Elements;
  for (Facet& facet : analysis_.Facets) {
    facet.FacetLabelWidth = 0;
    double sum = 0;
    std::int32_t count = 0;
    for (const ElementIndex element : facet.Elements()) {
      const ElementStatus status = elements.ElementStatus[element];
      if (status == ElementStatus::Unobserved) continue;
      facet.FacetLabelWidth =
          std::max(facet.FacetLabelWidth, DisplayLength(elements.ElementLabel[element], analysis_.Settings.Encoding));
      if (!Measurable(status)) continue;
      sum += static_cast<double>(elements.ElementMeasure[element]);
      ++count;
    }
    facet.FacetMeanMeasure = count > 0 ? static_cast<float>(sum / count) : 0.0F;
  }
}

void FitPass::CountParameters() {
  const ElementTable& elements = analysis_.Elements;
  auto& count = data_.ParameterCount;
  for (const ElementStatus status : elements.ElementStatus) {
    switch (status) {
      case ElementStatus::Unobserved:
        break;
      case ElementStatus::Minimum:
      case ElementStatus::Maximum:
        ++count[DataFit::Row(ReadStatus::OneExtreme)];
        break;
      case ElementStatus::Unmeasurable:
        ++count[DataFit::Row(ReadStatus::CategoryNotInUse)];
        break;
      default:
        ++count[DataFit::Row(ReadStatus::Usable)];
    }
  }
  std::int32_t& usable = count[DataFit::Row(ReadStatus::Usable)];
  const ScaleTables& scales = analysis_.Scales;
  for (const ScaleNumber scale : scales.Scales.all()) {
    const std::int32_t top = scales.Scales[scale].ScaleTopCategory;
    const ModelType type = analysis_.Models.Statements[scales.Scales[scale].ScaleModel].ModelType;
    if (type == ModelType::RatingScale && top > 1) {
      usable += top - 1;
    } else if (type != ModelType::RatingScale && scales.CategoryStep(scale, 0) != 1.0F) {
      usable += top + 1;
    }
  }
  for (const Facet& facet : analysis_.Facets) {
    if (facet.HasElements() && facet.FacetCenter != Centering::NotCentered) --usable;
  }
}

void FitPass::Add(const Observation& obs) {
  const ObservationFit fit = FitOf(obs, obs.MeasureSum, analysis_.Scales, kernel_);
  const double w = static_cast<double>(obs.ObsWeight);
  if (obs.Status == ReadStatus::Usable) {
    AddToCategories(obs, fit, kernel_, analysis_.Settings.SmallestNumber, analysis_.Scales);
    const float p = std::max(kernel_.Probability(obs.ObsOrdinal), analysis_.Settings.SmallestNumber);
    data_.LogLikelihood += w * std::log(static_cast<double>(p));
    data_.AddToSummary(obs, fit);
    unexpected_.AddUnexpected(obs, fit);
  }
  const LogOdds odds =
      kernel_.LogOddsMoments(obs.CurrentScale, obs.CurrentType, obs.CurrentTop, obs.MeasureSum, obs.ObsOrdinal);
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    const ObservedElement& own = obs.Elements[at];
    if (own.CurrentElement == kNoElement) continue;
    correlations_[own.CurrentElement].Add(obs, fit.Moments);
    if (own.Collects(obs.Status)) AddToElement(obs, own, fit, odds);
  }
}

void FitPass::AddToElement(const Observation& obs, const ObservedElement& own, const ObservationFit& fit,
                           const LogOdds& odds) {
  const float w = obs.ObsWeight;
  const ResponseMoments& m = fit.Moments;
  FitSums& sums = sums_[own.CurrentElement];
  sums.Expected += w * (own.Negative ? static_cast<float>(obs.CurrentTop) - m.ExpectedResponse : m.ExpectedResponse);
  sums.LogOddsObserved += w * std::clamp(odds.AtObserved, -kLargestLogOdds, kLargestLogOdds);
  sums.LogOddsMean += w * odds.Mean;
  sums.LogOddsVariance += w * (odds.MeanSquare - odds.Mean * odds.Mean);
  sums.Information += w * m.ResponseVariance;
  sums.ResidualSquaresZ += w * m.ResidualSquareZ;
  sums.ResidualSquares += w * m.ResidualSquare;
  sums.Kurtosis += static_cast<double>(w * m.KurtosisRatio);
  sums.ResidualVariance += static_cast<double>(w * m.ResidualVarianceTerm);
  sums.FairScoreSum += w * FairScore(obs.CurrentScale, obs.CurrentType, obs.MeanOffsetSum + own.CurrentMeasure,
                                     own.Negative, analysis_.Scales, kernel_);
}

void FitPass::Finish() {
  for (ElementIndex element = analysis_.Elements.ElementStats.last(); element.value > 0; --element)
    FinishElement(element);
}

void FitPass::FinishElement(ElementIndex element) {
  const Settings& settings = analysis_.Settings;
  const ElementRecord& record = analysis_.Elements.ElementStats[element];
  const FitSums& sums = sums_[element];
  ElementFit& fit = analysis_.Elements.Fit[element];
  const float pointBiserial = fit.Correlation;
  fit = {};
  fit.FairScoreSum = sums.FairScoreSum;
  const bool measureCorrelation = settings.PtBiserial == 'M' || settings.PtBiserial == 'N';
  if (!measureCorrelation) fit.Correlation = pointBiserial;
  float real = sums.Information;
  if (Measurable(analysis_.Elements.ElementStatus[element]) && std::fabs(record.PossibleScore) > 0) {
    fit.Displacement = static_cast<float>((record.ObservedScore - static_cast<double>(sums.Expected)) /
                                          static_cast<double>(std::max(settings.SmallestNumber, sums.Information)));
    if (sums.LogOddsVariance > 0)
      fit.Discrimination = std::clamp(
          (sums.LogOddsObserved - sums.LogOddsMean) / std::max(sums.LogOddsVariance, kLeastLogOddsVariance) + 1.0F,
          -kLargestDiscrimination, kLargestDiscrimination);
    if (measureCorrelation) fit.Correlation = correlations_[element].PointMeasure();
    fit.ExpectedCorrelation = correlations_[element].ExpectedPointMeasure();
    const FitStatistic infit = Standardize(sums.Information, sums.ResidualVariance, sums.ResidualSquares,
                                           settings.Whexact, settings.SmallestNumber);
    fit.InfitMeanSquare = infit.MeanSquare;
    fit.InfitZStd = infit.ZStd;
    fit.InfitFreedom = infit.Freedom;
    const FitStatistic outfit =
        Standardize(record.ObservedCount, sums.Kurtosis - static_cast<double>(record.ObservedCount),
                    sums.ResidualSquaresZ, settings.Whexact, settings.SmallestNumber);
    fit.OutfitMeanSquare = outfit.MeanSquare;
    fit.OutfitZStd = outfit.ZStd;
    fit.OutfitFreedom = outfit.Freedom;
    real = sums.Information / std::max(1.0F, fit.InfitMeanSquare);
  }
  const float information = settings.RealSE ? real : sums.Information;
  if (information > settings.SmallestNumber)
    fit.StandardError = static_cast<float>(std::sqrt(1.0 / static_cast<double>(information)));
}

}  // namespace tessaly
