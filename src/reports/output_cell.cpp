#include "reports/output_cell.h"

#include <cmath>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// The last columns of a text: what is too long loses its beginning.
std::string FieldEnd(std::string_view text) {
  std::string field = RightJustified(text, kFieldWidth);
  return field.substr(field.size() - kFieldWidth);
}

}  // namespace

std::string OutputCell::CellInteger(std::int16_t value) const {
  return CellLong(value);
}

std::string OutputCell::CellLong(std::int32_t value) const {
  const std::string text = GeneralText(value);
  return CellText(TrimLeft(text));
}

std::string OutputCell::CellText(std::string_view text) const {
  return FixedFields() ? FieldEnd(text) : std::string(text) + delimiter_;
}

std::string OutputCell::CellFixed2(float value) const {
  return CellFixedN(value, 2);
}

std::string OutputCell::CellFixed4(float value) const {
  return CellFixedN(value, 4);
}

std::string OutputCell::CellFixedN(float value, int decimals) const {
  return FixedFields() ? FormatSingle(value, kFieldWidth, decimals) : FixedDecimals(value, decimals) + delimiter_;
}

std::string OutputCell::CellSum(double value) const {
  constexpr double kWholeSingles = 16777216;
  if (!FixedFields() || std::fabs(value) <= kWholeSingles) return CellFixed2(static_cast<float>(value));
  return FormatNumber(value, kFieldWidth, 2);
}

}  // namespace tessaly
