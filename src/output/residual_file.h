// The residual file: what the model expects of each observation, and how far off it is.
#pragma once

#include "data/observation_store.h"
#include "model/response_kernel.h"
#include "output/label_field.h"
#include "output/text_output.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// Which observations get a row: those that the estimates rest on (`TakesPart`), the others, or all.
enum class ResidualRows { Used, Unused, All };

/// Decimals that `settings.ResponseFields` asks for, 0 to 9; 2 if it names none.
int ResidualDecimals(const Settings& settings);

/// One row for each observation, in the order of the data, with the fields that `settings.ResponseFields` selects; no
/// row at all if it selects none. Measures and displacements are in user units, responses raw ("Obs") and ordinal,
/// counted from the scale's lowest category ("Stp"). Figures of observations that take no part are 0. Memory depends
/// on the number of elements, not on that of observations.
/// False if the user ended it by the signal to finish, which it takes back.
bool WriteResidualRows(const LabelField& labels, int decimals, ResidualRows rows, const Analysis& analysis,
                       ObservationStore& store, ResponseKernel& kernel, RunControl& control, Console& console,
                       TextOutput& file);

/// The rows, behind a heading line if the settings or the destination want one. The caller opens and closes `file`.
bool WriteResidualFile(ResidualRows rows, OutputDestination destination, const Analysis& analysis,
                       ObservationStore& store, ResponseKernel& kernel, RunControl& control, Console& console,
                       TextOutput& file);

}  // namespace tessaly
