// Labels that a spreadsheet must leave as they are.
#pragma once

#include <string>
#include <string_view>

namespace tessaly {

/// `text` as a cell of a file for a spreadsheet: with "_" in front if the spreadsheet would take the label for
/// something else. Blanks at its ends do not matter to what it is taken for. The mark goes to
/// - numbers, also with commas among the digits ("1,234");
/// - what begins with "+", "-" or "=";
/// - what is made up of digits and the characters "+-=*/^ " only, with a digit;
/// - dates and times in whatever country: two or three numbers of at most four digits with "/", "-" or "." between them
///   ("3.5.", "1.2.2024"); an English month (whole or its first three letters, "Sept") with one or two such numbers
///   ("MARCH1", "5 Mar 24"); a time with or without a date ("10:30", "3.5. 10:30", "5 pm"). Whether the numbers make a
///   day that exists is not asked: spreadsheets differ in that.
std::string CleanSpreadsheetCell(std::string_view text);

}  // namespace tessaly
