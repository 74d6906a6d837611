#include "output/label_field.h"

#include "output/spreadsheet_cell.h"

namespace tessaly {

namespace {

std::string Doubled(std::string_view text, std::string_view mark) {
  std::string doubled;
  for (std::size_t at = 0; at < text.size();) {
    if (text.substr(at, mark.size()) == mark) {
      doubled.append(mark).append(mark);
      at += mark.size();
    } else {
      doubled += text[at++];
    }
  }
  return doubled;
}

}  // namespace

std::string LabelField::Delimited(std::string_view text) const {
  const std::string field =
      destination_ == OutputDestination::Spreadsheet ? CleanSpreadsheetCell(text) : std::string(text);
  const bool ambiguous =
      field.find(delimiter_) != std::string::npos || field.find_first_of("\"\r\n") != std::string::npos;
  const std::string quote = !quote_.empty() ? quote_ : ambiguous ? "\"" : "";
  return quote.empty() ? field : quote + Doubled(field, quote) + quote;
}

}  // namespace tessaly
