// The plot file of a bias run: tab-separated sheets from which a spreadsheet draws the interaction of two facets.
#pragma once

#include <string_view>

#include "interaction/bias_terms.h"
#include "output/text_output.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Which sheets a plot file holds.
struct BiasPlotSheets {
  /// One cell for each term: measures, average observations, t-values.
  bool Terms = false;
  /// One cell for two elements of one facet that met the same element of the other: contrasts, t-values.
  bool Pairs = false;
};

/// Writes the sheets of `terms`, each once with the first facet in its rows and once with the second; nothing unless
/// there are two bias facets. Measures and contrasts are in user units (sizes and contrasts without `Umean=`), averages
/// in raw responses. Sheets of terms have the orientation of the facet in the rows, sheets of pairs that of the facet
/// in the columns: the title ends in (+) or (-), and with (-) the signs of bias sizes are turned around. A cell without
/// a figure is one blank, and a row without any is left out. At most 250 elements of a facet, in the order in which the
/// terms name them, and 250 rows of pairs are plotted: a warning tells if there were more. The caller opens and closes
/// `file`.
void BiasPlotFile(const BiasTerms& terms, BiasPlotSheets sheets, const Analysis& analysis, std::string_view runDate,
                  TextOutput& file, Console& console);

}  // namespace tessaly
