// Labels and headings in the fields of output files.
#pragma once

#include <string>
#include <string_view>

#include "state/settings.h"

namespace tessaly {

/// Where an output file goes: a spreadsheet takes some labels for numbers or dates, R wants a heading line.
enum class OutputDestination { Plain, Spreadsheet, R };

/// Texts as the fields of one output file.
class LabelField {
 public:
  LabelField(const Settings& settings, OutputDestination destination)
      : delimiter_(DelimiterFor(destination, settings)),
        // A mark that separates fields cannot enclose them.
        quote_(settings.QuoteMark == settings.CsvDelimiter ? "" : settings.QuoteMark),
        destination_(destination) {}

  /// Fields of fixed width, without delimiter.
  bool Fixed() const { return delimiter_ == " "; }
  const std::string& Delimiter() const { return delimiter_; }
  /// Columns that the quotation marks take up.
  int QuoteWidth() const { return static_cast<int>(2 * quote_.size()); }

  /// `text` between the quotation marks of `QM=`, as it stands.
  std::string Quoted(std::string_view text) const { return quote_ + std::string(text) + quote_; }

  /// `text` as a field of a delimited line, without the delimiter behind it: marked for a spreadsheet where it must be;
  /// with marks of its own doubled; and between double quotes if `QM=` gives none but it holds the delimiter, a double
  /// quote or a line end, so that readers of RFC 4180 see one field.
  std::string Delimited(std::string_view text) const;

 private:
  /// A spreadsheet would put fixed fields into one column.
  static std::string DelimiterFor(OutputDestination destination, const Settings& settings) {
    return destination == OutputDestination::Spreadsheet && settings.CsvDelimiter == " " ? "\t" : settings.CsvDelimiter;
  }

  std::string delimiter_;
  std::string quote_;
  OutputDestination destination_;
};

}  // namespace tessaly
