// One position of a model statement.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "state/models.h"

namespace tessaly {

/// Which elements a position of a model statement takes.
struct ModelPosition {
  /// Normalised: "?", "$", "#", "X", a number or a range (with "#" in front for a scale for each element), behind "-"
  /// for a negative one and with "B" behind it for bias analysis; or empty.
  std::string Text;
  /// Lowest and highest element number, or `kAnyElement`, `kIgnoredPosition` in `Low`.
  std::int32_t Low = kAnyElement;
  std::int32_t High = kAnyElement;
  bool HasHash = false;
  bool Negative = false;
  bool Bias = false;
};

/// Understands the text of a position, or gives nothing for an element number out of range.
std::optional<ModelPosition> ParseModelPosition(std::string_view text);

}  // namespace tessaly
