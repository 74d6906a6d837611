#include "graphs/row_spread.h"

#include <algorithm>
#include <cstddef>

namespace tessaly {

namespace {

/// Neighbouring rows that touch.
struct Block {
  double Sum = 0;
  std::size_t Rows = 0;

  double Place() const { return Sum / static_cast<double>(Rows); }
};

}  // namespace

std::vector<double> SpreadRows(const std::vector<double>& wanted, double pitch, double first, double last) {
  // Less the room of the rows before it, each place is only bound not to lie before its predecessor's.
  std::vector<Block> blocks;
  for (std::size_t at = 0; at < wanted.size(); ++at) {
    Block block{wanted[at] - static_cast<double>(at) * pitch, 1};
    while (!blocks.empty() && blocks.back().Place() >= block.Place()) {
      block.Sum += blocks.back().Sum;
      block.Rows += blocks.back().Rows;
      blocks.pop_back();
    }
    blocks.push_back(block);
  }
  const double room = wanted.empty() ? 0 : static_cast<double>(wanted.size() - 1) * pitch;
  std::vector<double> places;
  for (const Block& block : blocks) {
    const double place = std::clamp(block.Place(), first, std::max(first, last - room));
    for (std::size_t row = 0; row < block.Rows; ++row)
      places.push_back(place + static_cast<double>(places.size()) * pitch);
  }
  return places;
}

}  // namespace tessaly
