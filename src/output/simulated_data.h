// Data drawn at random from the estimated model.
#pragma once

#include <cstdint>

#include "data/observation_store.h"
#include "model/response_kernel.h"
#include "output/text_output.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Writes simulated responses in the form of `Data=`, so that the same specification reads them in place of its data:
/// with `match` one for each observation that takes part in the estimates (extreme elements included), with the actual
/// response behind it as a comment; otherwise one for each combination of the elements in the data. The same `seed`
/// gives the same data on every machine; it stands in a comment. The caller opens and closes `output`.
/// Throws `Halt{IncompatibleFile}`, before anything is written, for more than 100,000,000 combinations.
void WriteSimulatedData(bool match, std::int32_t seed, const Analysis& analysis, ObservationStore& store,
                        ResponseKernel& kernel, RunControl& control, Console& console, TextOutput& output);

}  // namespace tessaly
