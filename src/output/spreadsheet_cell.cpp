#include "output/spreadsheet_cell.h"

#include <algorithm>
#include <iterator>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Digits of a year.
constexpr std::size_t kMostDigits = 4;

enum class RunKind { Digits, Letters, Separators, Other };

RunKind KindOf(char c) {
  if (IsDigit(c)) return RunKind::Digits;
  if (IsLetter(c)) return RunKind::Letters;
  return std::string_view(" /-.,:").find(c) != std::string_view::npos ? RunKind::Separators : RunKind::Other;
}

bool IsMonth(const std::string& word) {
  constexpr std::string_view kMonths[] = {"JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
                                          "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};
  return word == "SEPT" || std::any_of(std::begin(kMonths), std::end(kMonths), [&](std::string_view month) {
           return word == month || word == month.substr(0, 3);
         });
}

/// What could be pieces of a date or a time.
struct DatePieces {
  int Numbers = 0;
  int Months = 0;
  /// "am" or "pm".
  int HalfDays = 0;
  bool Colon = false;
  /// Two numbers have no "/", "-" or "." between them.
  bool Loose = false;
  /// Something that no date has.
  bool Foreign = false;

  void Add(RunKind kind, std::string_view run, bool betweenNumbers) {
    switch (kind) {
      case RunKind::Digits:
        ++Numbers;
        Foreign |= run.size() > kMostDigits;
        break;
      case RunKind::Letters:
        AddWord(UpperAscii(run));
        break;
      case RunKind::Separators:
        Colon |= run.find(':') != std::string_view::npos;
        Loose |= betweenNumbers && run.find_first_of("/-.") == std::string_view::npos;
        break;
      case RunKind::Other:
        Foreign = true;
        break;
    }
  }

  bool MakeDate() const {
    if (Foreign || Months > 1 || HalfDays > 1) return false;
    if (HalfDays > 0) return Numbers > 0;
    if (Colon) return Numbers > 1;
    if (Months > 0) return Numbers == 1 || Numbers == 2;
    return !Loose && (Numbers == 2 || Numbers == 3);
  }

 private:
  void AddWord(const std::string& word) {
    if (IsMonth(word)) {
      ++Months;
    } else if (word == "AM" || word == "PM") {
      ++HalfDays;
    } else {
      Foreign = true;
    }
  }
};

bool ReadsAsDate(std::string_view cell) {
  DatePieces pieces;
  RunKind before = RunKind::Other;
  while (!cell.empty() && !pieces.Foreign) {
    const RunKind kind = KindOf(cell.front());
    std::size_t length = 1;
    while (length < cell.size() && KindOf(cell[length]) == kind) ++length;
    const bool digitsFollow = length < cell.size() && IsDigit(cell[length]);
    pieces.Add(kind, cell.substr(0, length), before == RunKind::Digits && digitsFollow);
    before = kind;
    cell.remove_prefix(length);
  }
  return pieces.MakeDate();
}

bool ReadsAsNumber(std::string_view cell) {
  std::string digits(cell);
  std::erase(digits, ',');
  return IsNumeric(digits);
}

bool ReadsAsFormula(std::string_view cell) {
  if (std::string_view("+-=").find(cell.front()) != std::string_view::npos) return true;
  return cell.find_first_not_of("0123456789+-=*/^ ") == std::string_view::npos &&
         std::any_of(cell.begin(), cell.end(), IsDigit);
}

}  // namespace

std::string CleanSpreadsheetCell(std::string_view text) {
  const std::string_view cell = TrimBlanks(text);
  const bool misread = !cell.empty() && (ReadsAsNumber(cell) || ReadsAsFormula(cell) || ReadsAsDate(cell));
  return std::string(misread ? "_" : "").append(text);
}

}  // namespace tessaly
