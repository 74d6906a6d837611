// Score files: the figures of the elements of a facet, for spreadsheets and statistics packages.
#pragma once

#include <string>

#include "output/label_field.h"
#include "output/text_output.h"
#include "state/analysis.h"
#include "support/host.h"

namespace tessaly {

/// Writes one line for each element of `facet` to `file`, in the order of the element table; those without
/// observations only if `Omit-unobserved=` keeps them. The fields are those of `Settings::ScoreFields`: what
/// measurement tables show (measures, errors and displacements in user units, scores and averages in raw categories),
/// the fit statistics as chi-squares with their two-sided probabilities, and the numbers and labels of element and
/// facet. With heading lines, number and label of the facet stand in the first line and the names of the fields in the
/// second; a file for R has the second only, and always.
void WriteScoreFile(FacetNumber facet, OutputDestination destination, const Analysis& analysis, TextOutput& file);

/// The file of `facet` where `Scorefile=` gives `name`, which has "/" between folders: "scores.txt" becomes
/// "scores1.txt", "scores" becomes "scores.1.txt" and "out/" becomes "out/scorefil.1.txt".
std::string ScoreFileName(const std::string& name, FacetNumber facet);

/// `Scorefile=` with its folder: that of the report for a bare name. Empty if there is none.
std::string ScoreFilePath(const Settings& settings);

/// Writes the files of all facets that have a label, named after `path` (see `ScoreFilePath`). A name of a
/// workbook (".xls", ".xlsx") makes them files for a spreadsheet. False if one could not be written, which a warning
/// tells: it stays as far as it got, and those behind it are not begun.
bool WriteAllScoreFiles(const std::string& path, const Analysis& analysis, RunControl& control, Console& console);

}  // namespace tessaly
