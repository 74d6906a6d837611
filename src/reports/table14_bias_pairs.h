// Table 14: pairs of bias terms that differ in the element of one facet only.
#pragma once

#include <cstdint>
#include <string>

#include "interaction/bias_terms.h"
#include "reports/report_writer.h"
#include "state/analysis.h"
#include "state/run_control.h"
#include "support/host.h"

namespace tessaly {

/// For each bias facet, writes a table of the pairs for each item of the arrangement that is for no single facet:
/// letters A labels, F t statistic, M contrast, N element numbers; capitals ascending, small letters descending; P, for
/// which pairs have no figure, changes nothing. `Zscore=` (contrast in logits, t) decides which pairs have a row. Pairs
/// are put in order in bounded memory. A request to finish ends the tables. `run` is the number of the model statement
/// that asks for it, from 1; `subTables` how many Tables 13 there were. Throws `Halt{WorkFileProblem}`.
void BiasPairwise(std::int32_t run, std::int32_t subTables, const std::string& arrange, const BiasTerms& terms,
                  const Analysis& analysis, ReportWriter& report, RunControl& control, Console& console);

}  // namespace tessaly
