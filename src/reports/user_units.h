// Figures in user units as the columns of tables show them.
#pragma once

#include <string>

#include "reports/measurement_layout.h"
#include "state/settings.h"
#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

/// A measure, size or contrast in user units, in `kMeasureWidth` columns.
inline std::string MeasureText(float value, const Settings& settings) {
  return FormatSingle(value, kMeasureWidth, DecimalsIn(kMeasureWidth, settings.Udecimals));
}

/// The standard error of an estimate with error `error` (logit), in `kErrorWidth` columns.
inline std::string ErrorText(float error, const Settings& settings) {
  return FormatSingle(settings.UserSpread(error), kErrorWidth, DecimalsIn(kErrorWidth, settings.Udecimals));
}

/// A probability in five columns.
inline std::string ProbabilityText(float probability) {
  const std::string text = FormatSingle(probability, 6, 4);
  return std::string(TrimLeft(text).substr(0, 5));
}

}  // namespace tessaly
