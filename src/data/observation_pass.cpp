#include "data/observation_pass.h"

#include <algorithm>
#include <numeric>

namespace tessaly {

namespace {

constexpr std::int64_t kPollEvery = 100;
constexpr std::int64_t kMarksPerPass = 50;

}  // namespace

ObservationPass::ObservationPass(ObservationStore& store, const Analysis& analysis, RunControl& control,
                                 Console& console, FacetMeans means)
    : store_(store),
      elements_(analysis.Elements),
      models_(analysis.Models),
      control_(control),
      console_(console),
      takeOffMeans_(means == FacetMeans::TakeOff),
      marksEvery_(std::max<std::int64_t>(store.ValidResponses() / kMarksPerPass, 1)) {
  const ScaleTables& scales = analysis.Scales;
  const bool prepared = scales.CategoryOrdinal.Categories() > 0;
  if (!prepared) {
    rawOrdinals_.resize(static_cast<std::size_t>(std::max<std::int32_t>(scales.RawCategoryLimit, 1)) + 1);
    std::iota(rawOrdinals_.begin(), rawOrdinals_.end(), std::int16_t{0});
  }
  for (const ModelCell& cell : models_.Cells) {
    const ModelStatement& statement = models_.Statements[cell.CellModel];
    cells_.push_back({cell.CellModel, cell.CellScale, statement.ModelType,
                      scales.Scales[cell.CellScale].ScaleTopCategory, statement.ModelWeight,
                      prepared ? scales.CategoryOrdinal.Row(cell.CellScale) : rawOrdinals_.data()});
    anyNegative_ = anyNegative_ || statement.HasNegative();
  }
  for (const ActivePosition& position : analysis.Fields.Positions) {
    const Facet& facet = analysis.Facets[position.PositionFacet];
    positions_.push_back({facet.FacetPositive ? 1.0F : -1.0F, facet.FacetMeanMeasure});
  }
  elementsAtHand_.resize(positions_.size());
  current_.Elements.resize(positions_.size());
}

void ObservationPass::StartPass() {
  console_.ShowProgress(">", false);
}

void ObservationPass::ReadObservation() {
  if (current_.ObservationIndex == store_.ValidResponses()) {
    ended_ = true;
    console_.ShowProgress("<", true);
    return;
  }
  ++current_.ObservationIndex;
  Expand(store_.Read(current_.ObservationIndex, elementsAtHand_.data()));
  Tick();
}

void ObservationPass::Tick() {
  if (current_.ObservationIndex % kPollEvery != 0) return;
  control_.Poll();
  if (current_.ObservationIndex % marksEvery_ < kPollEvery) console_.ShowProgress(".", false);
}

void ObservationPass::Expand(const ObservationRecord& record) {
  const CellFacts& cell = cells_[static_cast<std::size_t>(record.ObsCell.value)];
  Observation& obs = current_;
  obs.CurrentCell = record.ObsCell;
  obs.CurrentStatement = cell.Statement;
  obs.CurrentScale = cell.Scale;
  obs.CurrentType = cell.Type;
  obs.CurrentTop = cell.Top;
  obs.ObsResponse = record.ObsResponse;
  obs.ObsOrdinal = record.ObsResponse;
  obs.Replication = record.Replication;
  obs.ObsWeight = record.Replication * cell.Weight;
  obs.MeasureSum = 0;
  obs.MeanOffsetSum = 0;
  obs.Status = ReadStatus::Usable;
  if (cell.Top < 1) {
    obs.Status = ReadStatus::CategoryNotInUse;
  } else if (cell.Type == ModelType::RatingScale) {
    obs.ObsOrdinal = cell.Ordinals[record.ObsResponse];
  }
  const ModelStatement* negatives = nullptr;
  if (anyNegative_) {
    negatives = &models_.Statements[cell.Statement];
    if (negatives->HasNegative()) CancelOpposites(*negatives);
  }
  SumMeasures(negatives);
}

// An element compared with itself says nothing: two positions of opposite sign that hold it cancel out.
void ObservationPass::CancelOpposites(const ModelStatement& statement) {
  const auto negative = [&](std::size_t at) { return statement.Negative({static_cast<std::int32_t>(at) + 1}); };
  for (std::size_t at = elementsAtHand_.size(); at-- > 1;) {
    for (std::size_t before = 0; before < at; ++before) {
      ElementIndex& a = elementsAtHand_[at];
      ElementIndex& b = elementsAtHand_[before];
      if (a.value == 0 || a != b || negative(at) == negative(before)) continue;
      a = kNoElement;
      b = kNoElement;
    }
  }
}

void ObservationPass::SumMeasures(const ModelStatement* negatives) {
  Observation& obs = current_;
  ObservedElement* const elements = obs.Elements.data();
  bool measurable = false;
  float sum = 0;
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    ObservedElement& own = elements[at];
    own.CurrentElement = elementsAtHand_[at];
    if (own.CurrentElement.value == 0) {
      own.CurrentMeasure = 0;
      continue;
    }
    own.Status = elements_.ElementStatus[own.CurrentElement];
    if (Measurable(own.Status)) {
      measurable = true;
    } else if (WithoutMeasure(own.Status)) {
      GiveUp(at);
      return;
    } else {
      CountExtreme();
    }
    float sign = positions_[at].Sign;
    if (negatives != nullptr) {
      own.Negative = negatives->Negative({static_cast<std::int32_t>(at) + 1});
      if (own.Negative) sign = -sign;
    }
    own.CurrentMeasure = sign * elements_.ElementMeasure[own.CurrentElement];
    sum += own.CurrentMeasure;
    if (elements_.WeightsUsed) obs.ObsWeight *= elements_.ElementStats[own.CurrentElement].ElementWeight;
    if (takeOffMeans_) {
      const float mean = sign * positions_[at].Mean;
      own.CurrentMeasure -= mean;
      obs.MeanOffsetSum += mean;
    }
  }
  obs.MeasureSum = sum;
  if (!measurable) {
    if (TakesPart(obs.Status)) obs.Status = ReadStatus::NothingMeasurable;
  } else if (obs.ObsOrdinal < 0) {
    obs.Status = ReadStatus::CategoryNotInUse;
  }
}

void ObservationPass::CountExtreme() {
  ReadStatus& status = current_.Status;
  if (status == ReadStatus::Usable) {
    status = ReadStatus::OneExtreme;
  } else if (status == ReadStatus::OneExtreme) {
    status = ReadStatus::SeveralExtreme;
  }
}

// The element at `at` is not in use: the observation counts for nothing, but who looks at it still finds its elements.
void ObservationPass::GiveUp(std::size_t at) {
  while (at-- > 0) current_.Elements[at].CurrentElement = elementsAtHand_[at];
  current_.Status = ReadStatus::ElementNotInUse;
}

}  // namespace tessaly
