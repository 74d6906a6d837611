// Scale codes of model statements and rating scales: R5, B3, D, P, M.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "state/models.h"

namespace tessaly {

/// Highest category of any scale.
constexpr std::int32_t kHighestCategory = 255;

/// What a scale code says.
struct ScaleCode {
  tessaly::ModelType ModelType = ModelType::RatingScale;
  /// Highest category; 255 for responses that are treated as missing.
  std::int32_t Top = kHighestCategory;
  /// For `D` with a number: the response that counts as 1; otherwise 0.
  std::int32_t DichotomyCut = 0;
  /// Unobserved intermediate categories stay in the structure.
  bool Keep = false;
};

/// Understands a code in capitals, or gives nothing: no such scale type, or a number that it cannot have.
std::optional<ScaleCode> ParseScaleCode(std::string_view code);

}  // namespace tessaly
