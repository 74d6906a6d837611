// Templates of table rows: a row is filled field by field from left to right, nothing in a table is printed by hand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/bytes.h"

namespace tessaly {

/// Fills one template. A template is literal text and fields: "####.##" a number with its width and decimals, "\    \"
/// a text of that width (both backslashes count), "!" a text of one column, "&" a text of any width. Each fill copies
/// the literal text up to the next field of its kind. A fill with no field left throws `FatalError`.
class EditWord {
 public:
  explicit EditWord(std::string_view editWord, const TextEncoding& encoding = {})
      : editWord_(editWord), encoding_(encoding) {}

  EditWord& EditText(std::string_view text);
  EditWord& EditSingle(float value);
  EditWord& EditDouble(double value);
  EditWord& EditLong(std::int32_t value);
  /// A value too long for the field loses its leading digits: for category numbers, whose fields have the room.
  EditWord& EditInteger(std::int16_t value);
  /// A score or count: one decimal, and for a whole value blanks in place of ".0".
  EditWord& EditScore(double value);

  /// The line filled so far and the rest of the template behind it.
  std::string Line() const;

 private:
  std::string_view NextEditWord();
  /// The next field whose first character is one of `kinds`, or an empty text; what stands before it goes to the line.
  std::string_view NextField(std::string_view kinds);

  std::string editWord_;
  TextEncoding encoding_;
  std::size_t position_ = 0;
  std::string line_;
};

}  // namespace tessaly
