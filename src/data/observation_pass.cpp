#include "data/observation_pass.h"

#include <algorithm>

namespace tessaly {

namespace {

constexpr std::int64_t kPollEvery = 100;
constexpr std::int64_t kMarksPerPass = 50;

}  // namespace

ObservationView::ObservationView(const Analysis& analysis, FacetMeans means) {
  current_.Elements.resize(static_cast<std::size_t>(analysis.Fields.ActiveFacetCount()));
  if (means == FacetMeans::Leave) return;
  for (const ActivePosition& position : analysis.Fields.Positions) {
    const Facet& facet = analysis.Facets[position.PositionFacet];
    means_.push_back(facet.FacetPositive ? facet.FacetMeanMeasure : -facet.FacetMeanMeasure);
  }
}

ObservationPass::ObservationPass(ObservationStore& store, const Analysis& analysis, RunControl& control,
                                 Console& console, FacetMeans means)
    : control_(control),
      console_(console),
      reader_(store, analysis),
      block_(reader_.Positions()),
      view_(analysis, means),
      marksEvery_(std::max<std::int64_t>(store.ValidResponses() / kMarksPerPass, 1)) {}

bool ObservationPass::NextBlock(ObservationBlock& block) {
  Start();
  if (!reader_.Read(block)) {
    console_.ShowProgress("<", true);
    return false;
  }
  const std::int64_t behind = block.First + static_cast<std::int64_t>(block.Size);
  for (std::int64_t n = (block.First + kPollEvery - 1) / kPollEvery * kPollEvery; n < behind; n += kPollEvery) Tick(n);
  return true;
}

void ObservationPass::ReadObservation() {
  if (at_ == block_.Size) {
    Start();
    at_ = 0;
    if (!reader_.Read(block_)) {
      ended_ = true;
      console_.ShowProgress("<", true);
      return;
    }
  }
  const std::int64_t observation = view_.Show(block_, at_++).ObservationIndex;
  if (observation % kPollEvery == 0) Tick(observation);
}

void ObservationPass::Start() {
  if (!started_) console_.ShowProgress(">", false);
  started_ = true;
}

void ObservationPass::Tick(std::int64_t observation) {
  control_.Poll();
  if (observation % marksEvery_ < kPollEvery) console_.ShowProgress(".", false);
}

const Observation& ObservationView::Show(const ObservationBlock& block, std::size_t at) {
  const CellFacts& cell = block.CellOf(at);
  Observation& obs = current_;
  obs.ObservationIndex = block.First + static_cast<std::int64_t>(at);
  obs.CurrentCell = block.Cell[at];
  obs.CurrentStatement = cell.Statement;
  obs.CurrentScale = cell.Scale;
  obs.CurrentType = cell.Type;
  obs.CurrentTop = cell.Top;
  obs.ObsResponse = block.Response[at];
  obs.ObsOrdinal = block.Ordinal[at];
  obs.Replication = block.Replication[at];
  obs.ObsWeight = block.Weight[at];
  obs.MeasureSum = block.Measure[at];
  obs.MeanOffsetSum = 0;
  obs.Status = block.Status[at];
  ShowElements(block, at);
  return obs;
}

void ObservationView::ShowElements(const ObservationBlock& block, std::size_t at) {
  const CellFacts& cell = block.CellOf(at);
  const ElementIndex* const row = block.Row(at);
  ObservedElement* const elements = current_.Elements.data();
  float offsets = 0;
  for (std::size_t position = block.Positions; position-- > 0;) {
    ObservedElement& own = elements[position];
    const ElementFacts& facts = block.Facts->Element(row[position]);
    own.CurrentElement = row[position];
    own.Negative = cell.Negative(position);
    own.CurrentMeasure = own.Negative ? -facts.SignedMeasure : facts.SignedMeasure;
    own.Status = facts.Status;
    if (means_.empty() || own.CurrentElement == kNoElement) continue;
    const float mean = own.Negative ? -means_[position] : means_[position];
    own.CurrentMeasure -= mean;
    offsets += mean;
  }
  current_.MeanOffsetSum = offsets;
}

}  // namespace tessaly
