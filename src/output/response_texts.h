// What must stand in a data line for a category.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "state/analysis.h"

namespace tessaly {

/// Responses that an analysis with the same specification reads as the same raw categories: missing codes, recoding and
/// the cut of a dichotomy are undone.
class ResponseTexts {
 public:
  explicit ResponseTexts(const Analysis& analysis);

  /// The response for raw category `category` of `scale`. The category itself, if no response is read as that.
  const std::string& TextOf(ScaleNumber scale, std::int32_t category);

 private:
  std::vector<std::string> TextsOf(ScaleNumber scale) const;

  const Analysis& analysis_;
  /// By scale and category; empty as long as nobody asked for the scale.
  Table<ScaleNumber, std::vector<std::string>, 0> texts_;
};

}  // namespace tessaly
