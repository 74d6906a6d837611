#include "estimate/fit_pass.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "data/block_pipeline.h"
#include "data/observation_pass.h"
#include "estimate/standardize.h"

namespace tessaly {

namespace {

constexpr float kLargestLogOdds = 100.0F;
constexpr float kLargestDiscrimination = 10.0F;
constexpr float kLeastLogOddsVariance = 1e-10F;
/// Of observations to one element in single precision. Errors of 100,000 equal ones show in standardized fit.
constexpr std::int32_t kMostAdditions = 1 << 12;

}  // namespace

FitPass::FitPass(Analysis& analysis, ObservationStore& store, const ResponseKernel& kernel, RunControl& control,
                 Console& console)
    : analysis_(analysis),
      store_(store),
      hardwareExponent_(kernel.HardwareExponent()),
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
  ObservationPass pass(store_, analysis_, control_, console_);
  FitEvaluator reading(analysis_, hardwareExponent_, means);
  FitEvaluator adding(analysis_, hardwareExponent_, means);
  ObservationView view(analysis_, means);
  BlockSteps<FitBlock> steps;
  steps.Make = [&] { return FitBlock(pass.Positions(), analysis_.Scales); };
  steps.Evaluate = [&](FitBlock& block) { reading.Evaluate(block); };
  steps.Take = [&](FitBlock& block) {
    adding.Evaluate(block);
    Add(block, adding, view);
  };
  TakeBlocks(pass, std::move(steps));
  carried_.Finish();
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
      facet.FacetLabelWidth = std::clamp(DisplayLength(elements.ElementLabel[element], analysis_.Settings.Encoding),
                                         facet.FacetLabelWidth, kWidestLabel);
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

void FitPass::Add(const FitBlock& block, FitEvaluator& evaluator, ObservationView& view) {
  const ObservationBlock& observations = block.Observations;
  for (std::size_t at = 0; at < observations.Size; ++at) {
    const Observation& obs = view.Show(observations, at);
    if (crossReference_) crossReference_->Add(obs);
    data_.ResponsesByStatus[DataFit::Row(obs.Status)].Add(obs.ObsResponse);
    if (!TakesPart(obs.Status)) continue;
    if (obs.Status == ReadStatus::Usable) AddToData(obs, block.Rows[at], evaluator.ScoresOf(block, at).Probabilities);
    AddToElements(obs, block.Rows[at], block.FairRow(at));
  }
}

void FitPass::AddToData(const Observation& obs, const FitBlock::Row& row, const Probabilities& probabilities) {
  AddToCategories(obs, row.Fit, probabilities, analysis_.Settings.SmallestNumber, analysis_.Scales);
  data_.LogLikelihood += static_cast<double>(obs.ObsWeight) * row.LogProbability;
  data_.AddToSummary(obs, row.Fit);
  unexpected_.AddUnexpected(obs, row.Fit);
}

void FitPass::AddToElements(const Observation& obs, const FitBlock::Row& row, const float* fairScores) {
  const float w = obs.ObsWeight;
  const ResponseMoments& m = row.Fit.Moments;
  const LogOdds& odds = row.Odds;
  const CorrelationSums correlation(obs, m);
  FitSums own;
  own.Information = w * m.ResponseVariance;
  own.Kurtosis = static_cast<double>(w * m.KurtosisRatio);
  own.ResidualSquares = w * m.ResidualSquare;
  own.ResidualVariance = static_cast<double>(w * m.ResidualVarianceTerm);
  own.ResidualSquaresZ = w * m.ResidualSquareZ;
  own.LogOddsObserved = w * std::clamp(odds.AtObserved, -kLargestLogOdds, kLargestLogOdds);
  own.LogOddsMean = w * odds.Mean;
  own.LogOddsVariance = w * (odds.MeanSquare - odds.Mean * odds.Mean);
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    const ObservedElement& element = obs.Elements[at];
    if (element.CurrentElement == kNoElement) continue;
    correlations_[element.CurrentElement] += correlation;
    if (!element.Collects(obs.Status)) continue;
    own.Expected =
        w * (element.Negative ? static_cast<float>(obs.CurrentTop) - m.ExpectedResponse : m.ExpectedResponse);
    own.FairScoreSum = w * fairScores[at];
    FitSums& sums = sums_[element.CurrentElement];
    sums += own;
    if (++sums.Additions == kMostAdditions) {
      carried_.Carry(element.CurrentElement);
      sums.Additions = 0;
    }
  }
}

FitSums& FitSums::operator+=(const FitSums& other) {
  Information += other.Information;
  Kurtosis += other.Kurtosis;
  ResidualSquares += other.ResidualSquares;
  ResidualVariance += other.ResidualVariance;
  ResidualSquaresZ += other.ResidualSquaresZ;
  Expected += other.Expected;
  LogOddsObserved += other.LogOddsObserved;
  LogOddsMean += other.LogOddsMean;
  LogOddsVariance += other.LogOddsVariance;
  FairScoreSum += other.FairScoreSum;
  return *this;
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
        Standardize(static_cast<float>(record.ObservedCount), sums.Kurtosis - record.ObservedCount,
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
