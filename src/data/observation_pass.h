// One pass over the stored observations: the common front of estimation, fit, bias, agreement and output.
#pragma once

#include <cstdint>
#include <iterator>
#include <vector>

#include "data/observation_block.h"
#include "data/observation_store.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

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

/// Single observations of a block, one at a time.
class ObservationView {
 public:
  explicit ObservationView(const Analysis& analysis, FacetMeans means = FacetMeans::Leave);

  /// Observation `at` of `block`, from 0, until the next call.
  const Observation& Show(const ObservationBlock& block, std::size_t at);
  const Observation& Current() const { return current_; }

 private:
  void ShowElements(const ObservationBlock& block, std::size_t at);

  /// By position: signed mean measure of its facet (logit), if means are taken off.
  std::vector<float> means_;
  Observation current_;
};

/// All observations, as an input range of single ones or block by block: call either `begin` or `NextBlock`. Marks
/// progress and polls the user for every 100th observation, so that reading on may throw `Stopped` (or `Halt` if a work
/// file fails); nothing else in the loop does. Allocates nothing after it is made.
class ObservationPass {
 public:
  ObservationPass(ObservationStore& store, const Analysis& analysis, RunControl& control, Console& console,
                  FacetMeans means = FacetMeans::Leave);

  class Iterator {
   public:
    using value_type = Observation;
    using difference_type = std::ptrdiff_t;

    explicit Iterator(ObservationPass& pass) : pass_(&pass) {}
    const Observation& operator*() const { return pass_->view_.Current(); }
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
    ReadObservation();
    return Iterator(*this);
  }
  std::default_sentinel_t end() const { return {}; }

  std::int64_t ValidResponses() const { return reader_.ValidResponses(); }
  std::size_t Positions() const { return reader_.Positions(); }
  /// Fills `block` with the next observations; gives false behind the last.
  bool NextBlock(ObservationBlock& block);

 private:
  void ReadObservation();
  void Start();
  void Tick(std::int64_t observation);

  RunControl& control_;
  Console& console_;
  BlockReader reader_;
  ObservationBlock block_;
  /// Place of the current observation in `block_`.
  std::size_t at_ = 0;
  ObservationView view_;
  bool started_ = false;
  bool ended_ = false;
  std::int64_t marksEvery_ = 1;
};

}  // namespace tessaly
