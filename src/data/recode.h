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
  void LayRanges(const std::vector<RecodeRule>& rules);
  std::size_t PieceOfEnd(double end) const;

  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  std::unordered_map<std::string, std::int32_t, TextHash, std::equal_to<>> exact_;
  /// Both ends of all ranges, ascending. They cut the number line into pieces: each end by itself (piece 2i for end i)
  /// and what lies between two (piece 2i + 1).
  std::vector<double> ends_;
  /// Target of the first range that holds the piece.
  std::vector<std::optional<std::int32_t>> targets_;
};

}  // namespace tessaly
