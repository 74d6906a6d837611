// One field of an output file that other programs read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tessaly {

/// Columns of a field without a delimiter.
constexpr int kFieldWidth = 10;

/// Formats cells for one delimiter: right-justified in 10 columns for a blank, else the trimmed value and the
/// delimiter. The writer of a delimited row takes the last delimiter off the finished line.
class OutputCell {
 public:
  explicit OutputCell(std::string csvDelimiter) : delimiter_(std::move(csvDelimiter)) {}

  std::string CellInteger(std::int16_t value) const;
  std::string CellLong(std::int32_t value) const;
  std::string CellText(std::string_view text) const;
  std::string CellFixed2(float value) const;
  std::string CellFixed4(float value) const;
  std::string CellFixedN(float value, int decimals) const;
  /// A sum with two decimals, as the single that it is nearest to as long as singles hold all whole numbers.
  std::string CellSum(double value) const;

 private:
  bool FixedFields() const { return delimiter_ == " "; }

  std::string delimiter_;
};

}  // namespace tessaly
