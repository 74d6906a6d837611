// The `Models=` block of an anchor file, and the names that it gives to scales.
#pragma once

#include <string>

#include "output/text_output.h"
#include "state/analysis.h"

namespace tessaly {

/// Names of the scales in an anchor file, where each scale has a block of its own.
class AnchorScaleNames {
 public:
  AnchorScaleNames(const ModelTables& models, const ScaleTables& scales);

  /// Whether the scale is one of those in `ScaleOrder`, which alone have estimates to be kept.
  bool Has(ScaleNumber scale) const { return places_[scale] >= 0; }
  /// The prefix and the scale's place in `ScaleOrder`, from 0.
  std::string Of(ScaleNumber scale) const;

 private:
  std::string prefix_;
  Table<ScaleNumber, std::int32_t, 0> places_;
};

/// The first of RS, RT, ... RZ, RZA, ... with which no definition and no scale of a statement begins.
std::string ChooseScalePrefix(const ModelTables& models);

/// What a statement calls its scale: the definition's name, or the field as it stands.
const std::string& OwnScaleName(const ModelStatement& statement, const ModelTables& models);

/// Writes the block: each statement names the scale that was estimated for it. One with `#` becomes a line for each of
/// its cells, and stands behind them as it was, for elements that have no cell. Data may refer to the element of a cell
/// by the numbers of elements that it is the target of: these have lines of their own, up to 100,000 for a cell.
void WriteAnchorModels(const AnchorScaleNames& names, const Analysis& analysis, TextOutput& file);

}  // namespace tessaly
