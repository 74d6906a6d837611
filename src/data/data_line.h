// A data line as fields: comma-, TAB- or blank-delimited, with columns that `Dvalues=` supplies.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "state/facets.h"

namespace tessaly {

/// Most fields of a data line.
constexpr std::size_t kMostDataFields = 32000;

/// One field of a data line.
struct DataField {
  std::string_view Text;
  /// The value of a text of one to nine digits, -1 for any other text.
  std::int32_t Number = -1;

  constexpr DataField() = default;
  explicit DataField(std::string_view text);
  DataField(std::string_view text, std::int32_t number) : Text(text), Number(number) {}
  friend bool operator==(const DataField&, const DataField&) = default;
};

inline constexpr DataField kEmptyField;

/// Splits a line of ordinary characters in one scan. `fields[0]` is left empty, the fields follow as views into `raw`;
/// a blank line has none. False, with `fields` undefined, for a line with any character that only `SplitAnyLine` knows
/// (quotes, "=", "_", "*", ";", character 255, control characters, TABs and commas together) or with too many fields.
bool SplitPlainLine(std::string_view raw, std::vector<DataField>& fields);

/// The same for every line: comments are dropped, the delimiter is found, quotes become delimiters. `work` is
/// overwritten and holds the text of the fields. A line that begins with "*" has this as its only field. Stops two
/// fields above `kMostDataFields`.
void SplitAnyLine(std::string_view raw, std::string& work, std::vector<DataField>& fields);

/// The data line at hand. Holds views into the raw line, which must outlive them.
class DataLine {
 public:
  /// `replicationPrefix` in capitals (`Replication=`).
  DataLine(const ColumnTable& columns, std::string replicationPrefix);

  /// Splits `raw`; `fileLines` and `dataLines` are what the `Dvalues=` values $L and $C stand for.
  /// Throws `Halt{TooManyFields}`.
  void Split(std::string_view raw, std::int64_t fileLines, std::int64_t dataLines);

  /// Only characters that `SplitPlainLine` knows: no comment either.
  bool Plain() const { return plain_; }
  /// Nothing but delimiters and comment.
  bool Blank() const { return blank_; }
  /// The line "*" that ends a file.
  bool EndsData() const { return FieldCount() > 0 && fields_[1].Text == "*"; }
  std::int32_t FieldCount() const { return static_cast<std::int32_t>(fields_.size()) - 1; }
  /// Field 1 to `FieldCount()`: the columns, with "_" read as "-", then the responses. Empty for a column not filled.
  const DataField& Field(std::int32_t number) const {
    return static_cast<std::size_t>(number) < fields_.size() ? fields_[static_cast<std::size_t>(number)] : kEmptyField;
  }
  std::string_view Text(std::int32_t number) const { return Field(number).Text; }
  /// Gives a column that is derived from another one its text.
  void SetDerived(ColumnNumber column, std::string text);

  /// Weight of all observations of the line.
  float Replication() const { return replication_; }
  /// The replication field with its prefix in capitals; empty for a line without.
  const std::string& ReplicationField() const { return replicationField_; }

 private:
  void TakeReplication();
  void SupplyColumns(std::int64_t fileLines, std::int64_t dataLines);
  std::string_view Supplied(ColumnNumber column, std::int64_t fileLines, std::int64_t dataLines);
  void ReadUnderlinesAsHyphens();

  const ColumnTable& columns_;
  std::string prefix_;
  bool allOnTheLine_ = true;
  bool plain_ = true;
  bool blank_ = true;
  float replication_ = 1;
  std::string replicationField_;
  std::string work_;
  std::vector<DataField> fields_;
  std::vector<DataField> delimited_;
  /// Texts of columns that are not on the line.
  Table<ColumnNumber, std::string> supplied_;
  /// 'L' or 'C' for a column of that $ value.
  Table<ColumnNumber, char> counters_;
};

}  // namespace tessaly
