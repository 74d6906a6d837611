// Recoding: what a rating scale block makes of a response before it is read as a number.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "state/models.h"

namespace tessaly {

/// The recode table of one definition, ready for look-up.
class RecodeTable {
 public:
  explicit RecodeTable(const std::vector<RecodeRule>& rules);

  bool Empty() const { return exact_.empty(); }
  /// The raw category that replaces `datum`, -1 to make it missing, or nothing if no rule names it. The first rule that
  /// names the very text decides, then, for a number, the first range that holds it.
  std::optional<std::int32_t> Target(std::string_view datum) const;

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  std::unordered_map<std::string, std::int32_t, TextHash, std::equal_to<>> exact_;
  std::vector<RecodeRule> ranges_;
};

}  // namespace tessaly
