// A line of an output file, cell by cell.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "reports/output_cell.h"

namespace tessaly {

/// Puts together one line after the other, of the cells that `OutputCell` gives, in one buffer: for files of millions
/// of lines.
class CellLine {
 public:
  /// A blank as delimiter makes fixed fields. Real numbers get `decimals` decimals, 0 to 9.
  CellLine(const std::string& delimiter, int decimals);

  /// Begins a new line.
  void Clear() { length_ = 0; }
  void AddWhole(std::int32_t value);
  void AddReal(float value);
  /// A cell as it stands in the line, with its delimiter.
  void AddCell(std::string_view cell) { length_ += cell.copy(Room(cell.size()), cell.size()); }
  /// The same, quicker, for a cell behind which `kPadding` more characters may be read: short cells are copied in one
  /// step of constant length.
  void AddPaddedCell(std::string_view cell) {
    char* const to = Room(cell.size() + kPadding);
    for (std::size_t at = 0; at < cell.size(); at += kPadding) std::memcpy(to + at, cell.data() + at, kPadding);
    length_ += cell.size();
  }
  static constexpr std::size_t kPadding = 16;

  /// The line without the delimiter behind its last cell. Holds until the next call.
  std::string_view Line() const;

 private:
  /// A cell that is made once, as far as it has room here: of a fixed field, its end.
  struct KeptCell {
    std::array<char, 7> Text{};
    /// 0 for a cell that has no room.
    std::uint8_t Length = 0;
  };

  void AddDigits(std::int64_t number, int decimals, bool point);
  /// Where the next `count` characters may be written.
  char* Room(std::size_t count) {
    if (buffer_.size() - length_ < count) buffer_.resize(2 * (length_ + count));
    return buffer_.data() + length_;
  }

  OutputCell cells_;
  std::string delimiter_;
  bool fixed_;
  int decimals_;
  double power_;
  /// First sizes times `power_` that have no room in a fixed field: without a sign, and with one.
  std::array<double, 2> limits_;
  /// Of the real numbers nearest to 0, in ascending order.
  std::vector<KeptCell> kept_;
  /// Blanks in front of a kept cell.
  std::size_t keptBlanks_;
  std::string buffer_;
  std::size_t length_ = 0;
};

}  // namespace tessaly
