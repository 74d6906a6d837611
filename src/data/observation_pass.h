// One pass over the stored observations: the common front of estimation, fit, bias, agreement and output.
#pragma once

#include <cstdint>
#include <iterator>
#include <vector>

#include "data/observation_store.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// How an observation counts in the present state of the estimation.
enum class ReadStatus : std::int16_t {
  /// All elements are measurable.
  Usable = 1,
  OneExtreme = 2,
  CategoryNotInUse = -1,
  /// An element is unobserved or unmeasurable.
  ElementNotInUse = -2,
  SeveralExtreme = -3,
  /// No position with a measurable element.
  NothingMeasurable = -4,
};

/// Whether passes use an observation of this status.
constexpr bool TakesPart(ReadStatus status) {
  return static_cast<std::int16_t>(status) > 0;
}

/// One element of the observation at hand.
struct ObservedElement {
  /// Record index, 0 for none.
  ElementIndex CurrentElement{0};
  /// The signed measure (logit) that the position contributes; with reporting means on, less its facet's mean.
  float CurrentMeasure = 0;
  ElementStatus Status = ElementStatus::Unobserved;
  /// The position is marked `-`: the element's score is reversed.
  bool Negative = false;

  /// Whether the element collects this observation: extreme elements collect all that take part.
  bool Collects(ReadStatus status) const {
    return CurrentElement.value > 0 && (BelowActive(Status) || status == ReadStatus::Usable);
  }
};

/// The observation at hand.
struct Observation {
  /// From 1.
  std::int64_t ObservationIndex = 0;
  CellNumber CurrentCell{0};
  StatementNumber CurrentStatement{0};
  ScaleNumber CurrentScale{0};
  ModelType CurrentType = ModelType::RatingScale;
  /// Highest ordinal category of the scale.
  std::int32_t CurrentTop = 0;
  /// Raw response after recoding, and its ordinal.
  std::int32_t ObsResponse = 0;
  std::int32_t ObsOrdinal = 0;
  float Replication = 1;
  /// Replication times model weight times element weights.
  float ObsWeight = 1;
  /// Net measure of the model, logit: a higher one always means a higher expected category.
  float MeasureSum = 0;
  /// Sum of the signed facet means that were taken off `CurrentMeasure`.
  float MeanOffsetSum = 0;
  tessaly::ReadStatus Status = tessaly::ReadStatus::Usable;
  /// By position; entry 0 is position 1. Loops run from the last position to the first.
  std::vector<ObservedElement> Elements;
};

/// Whether a pass takes the facets' mean measures off each position's own measure, for fair averages.
enum class FacetMeans { Leave, TakeOff };

/// An input range over all observations. Marks progress and polls the user every 100th observation, so that reading on
/// may throw `Stopped` (or `Halt` if a work file fails); nothing else in the loop does. Allocates nothing after it is
/// made.
class ObservationPass {
 public:
  ObservationPass(ObservationStore& store, const Analysis& analysis, RunControl& control, Console& console,
                  FacetMeans means = FacetMeans::Leave);

  class Iterator {
   public:
    using value_type = Observation;
    using difference_type = std::ptrdiff_t;

    explicit Iterator(ObservationPass& pass) : pass_(&pass) {}
    const Observation& operator*() const { return pass_->current_; }
    Iterator& operator++() {
      pass_->ReadObservation();
      return *this;
    }
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const { return pass_->ended_; }

   private:
    ObservationPass* pass_;
  };

  /// Begins the pass: call once.
  Iterator begin() {
    StartPass();
    ReadObservation();
    return Iterator(*this);
  }
  std::default_sentinel_t end() const { return {}; }

 private:
  struct CellFacts {
    StatementNumber Statement;
    ScaleNumber Scale;
    ModelType Type;
    std::int16_t Top;
    float Weight;
    const std::int16_t* Ordinals;
  };
  struct PositionFacts {
    /// 1 where the facet's measures are added, -1 where they are subtracted.
    float Sign;
    float Mean;
  };

  void StartPass();
  void ReadObservation();
  void Expand(const ObservationRecord& record);
  void CancelOpposites(const ModelStatement& statement);
  /// `negatives` is the statement if some statement has positions marked `-`, else null.
  void SumMeasures(const ModelStatement* negatives);
  void CountExtreme();
  void GiveUp(std::size_t at);
  void Tick();

  ObservationStore& store_;
  const ElementTable& elements_;
  const ModelTables& models_;
  RunControl& control_;
  Console& console_;
  std::vector<CellFacts> cells_;
  std::vector<PositionFacts> positions_;
  /// Ordinals as long as scales have none of their own: raw categories count as they are.
  std::vector<std::int16_t> rawOrdinals_;
  std::vector<ElementIndex> elementsAtHand_;
  bool takeOffMeans_;
  bool anyNegative_ = false;
  bool ended_ = false;
  std::int64_t marksEvery_ = 1;
  Observation current_;
};

}  // namespace tessaly
