// A pass in blocks on two processors.
#pragma once

#include <functional>
#include <utility>

#include "data/observation_pass.h"
#include "support/ordered_pipeline.h"

namespace tessaly {

/// What is done with the blocks of a pass. A `Block` has `Observations`, and `Evaluated`, which says whether the part
/// of the work that can be done before or after its turn is done.
template <class Block>
struct BlockSteps {
  std::function<Block()> Make;
  /// Called for each block as it is read, on the reading thread.
  std::function<void(const ObservationBlock&)> Look;
  /// Evaluates a block on the reading thread, while the other one has enough to do. Otherwise `Take` has to.
  std::function<void(Block&)> Evaluate;
  /// Called for each block in turn, on a thread of its own if that is worthwhile.
  std::function<void(Block&)> Take;
};

/// Takes all blocks of `pass`. Throws what reading and the steps throw.
template <class Block>
void TakeBlocks(ObservationPass& pass, BlockSteps<Block> steps) {
  // With fewer observations a second thread costs more than it saves.
  constexpr std::int64_t kManyObservations = 20000;
  OrderedPipeline<Block> pipeline(pass.ValidResponses() >= kManyObservations, steps.Make, std::move(steps.Take));
  while (true) {
    Block& block = pipeline.Free();
    block.Evaluated = false;
    if (!pass.NextBlock(block.Observations)) break;
    if (steps.Look) steps.Look(block.Observations);
    if (pipeline.FarAhead()) steps.Evaluate(block);
    pipeline.Submit();
  }
  pipeline.Finish();
}

}  // namespace tessaly
