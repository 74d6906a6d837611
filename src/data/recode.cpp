#include "data/recode.h"

#include <algorithm>
#include <numeric>

#include "support/number_text.h"

namespace tessaly {

RecodeTable::RecodeTable(const std::vector<RecodeRule>& rules) {
  for (const RecodeRule& rule : rules) {
    exact_.emplace(rule.Text, rule.Target);
    if (!rule.IsRange) continue;
    ends_.push_back(rule.Low);
    ends_.push_back(rule.High);
  }
  std::sort(ends_.begin(), ends_.end());
  ends_.erase(std::unique(ends_.begin(), ends_.end()), ends_.end());
  LayRanges(rules);
}

std::size_t RecodeTable::PieceOfEnd(double end) const {
  return 2 * static_cast<std::size_t>(std::lower_bound(ends_.begin(), ends_.end(), end) - ends_.begin());
}

void RecodeTable::LayRanges(const std::vector<RecodeRule>& rules) {
  targets_.resize(2 * ends_.size());
  // A step towards the first piece from here on that no earlier range has taken, so that ranges in each other cost no
  // more than ranges side by side.
  std::vector<std::size_t> onward(targets_.size() + 1);
  std::iota(onward.begin(), onward.end(), std::size_t{0});
  const auto firstFree = [&onward](std::size_t piece) {
    while (onward[piece] != piece) piece = onward[piece] = onward[onward[piece]];
    return piece;
  };
  for (const RecodeRule& rule : rules) {
    if (!rule.IsRange) continue;
    const std::size_t last = PieceOfEnd(rule.High);
    for (std::size_t piece = firstFree(PieceOfEnd(rule.Low)); piece <= last; piece = firstFree(piece)) {
      targets_[piece] = rule.Target;
      onward[piece] = piece + 1;
    }
  }
}

std::optional<std::int32_t> RecodeTable::Target(std::string_view datum) const {
  if (const auto exact = exact_.find(datum); exact != exact_.end()) return exact->second;
  if (ends_.empty() || !IsNumeric(datum)) return {};
  const double value = LeadingNumber(datum);
  const auto above = std::upper_bound(ends_.begin(), ends_.end(), value);
  if (above == ends_.begin()) return {};
  const auto end = static_cast<std::size_t>(above - ends_.begin()) - 1;
  return targets_[2 * end + (ends_[end] == value ? 0 : 1)];
}

}  // namespace tessaly
