#include "reports/unexpected_order.h"

#include <cmath>
#include <functional>
#include <utility>

#include "support/bytes.h"
#include "support/number_text.h"
#include "support/polled_sort.h"

namespace tessaly {

namespace {

constexpr int kPrintedWidth = 5;
constexpr std::size_t kKeysBetweenPolls = 10000;
constexpr std::int32_t kHighestColumn = 255;

/// The value of a number as its column shows it.
double Printed(float value) {
  return LeadingNumber(FormatSingle(value, kPrintedWidth, 1));
}

double ElementAt(const UnexpectedResponse& response, PositionNumber position) {
  return position.value == 0 ? 0.0 : response.Elements[static_cast<std::size_t>(position.value - 1)].value;
}

/// What a key letter (in capitals) sorts by.
double FigureOf(const UnexpectedResponse& response, char letter) {
  switch (letter) {
    case 'S':
    case 'Z':
    case 'F':
    case 'T':
      return Printed(response.ZScore);
    case 'U':
      return std::fabs(Printed(response.ZScore));
    case 'R':
    case 'Y':
      return Printed(static_cast<float>(response.Score) - response.Expected);
    case 'E':
    case 'P':
      return Printed(response.Expected);
    case 'X':
    case 'V':
      return response.Score;
    default:
      return response.Category;
  }
}

constexpr std::string_view kLetters = "SZFTURYEPXVCOD";

/// The sort figures of a response, ascending, one for each usable key.
class SortFigures {
 public:
  SortFigures(const UnexpectedOrder& order, const FieldMap& fields) : fields_(fields) {
    for (const std::string& key : order.Keys) {
      if (key.empty()) continue;
      if (IsDigit(key.front())) {
        const std::int32_t column = ParseInt(key, kHighestColumn).Value;
        if (column >= 1 && column <= fields.DataFacetCount()) AddColumn(ColumnNumber{column});
      } else if (kLetters.find(UpperAscii(key.front())) != std::string_view::npos) {
        letters_.push_back(key.front());
        columns_.push_back({0});
      }
    }
    for (const ColumnNumber column : fields.Columns.all()) AddColumn(column);
  }

  std::vector<double> Of(const UnexpectedResponse& response) const {
    std::vector<double> figures;
    for (std::size_t key = 0; key < letters_.size(); ++key) {
      const char letter = letters_[key];
      if (letter == kColumn) {
        figures.push_back(ElementAt(response, fields_.Columns[columns_[key]].ColumnPosition));
      } else {
        const double sign = UpperAscii(letter) == letter ? 1 : -1;
        figures.push_back(sign * FigureOf(response, UpperAscii(letter)));
      }
    }
    return figures;
  }

 private:
  static constexpr char kColumn = '#';

  void AddColumn(ColumnNumber column) {
    letters_.push_back(kColumn);
    columns_.push_back(column);
  }

  const FieldMap& fields_;
  std::vector<char> letters_;
  std::vector<ColumnNumber> columns_;
};

UnexpectedOrder OrderOf(std::string_view wording) {
  UnexpectedOrder order;
  order.Wording = TrimBlanks(wording);
  for (const std::string_view key : SplitAt(wording, ',')) order.Keys.emplace_back(TrimBlanks(key));
  return order;
}

}  // namespace

std::vector<UnexpectedOrder> ParseUsort(std::string_view usort) {
  if (usort.find_first_of("Nn") != std::string_view::npos) return {};
  std::vector<UnexpectedOrder> orders;
  std::string inside;
  bool open = true;
  const auto close = [&] {
    if (open && (!inside.empty() || orders.empty())) orders.push_back(OrderOf(inside));
    inside.clear();
    open = false;
  };
  for (const char c : usort) {
    if (c == ')') {
      close();
    } else if (c == '(') {
      if (!inside.empty()) close();
      open = true;
    } else if (open) {
      inside += c;
    }
  }
  close();
  return orders;
}

void SortUnexpected(const UnexpectedOrder& order, const FieldMap& fields, RunControl& control,
                    std::vector<UnexpectedResponse>& responses) {
  const SortFigures figures(order, fields);
  std::vector<std::pair<std::vector<double>, std::size_t>> keys;
  keys.reserve(responses.size());
  const auto poll = [&] { control.Poll(); };
  for (const UnexpectedResponse& response : responses) {
    if (keys.size() % kKeysBetweenPolls == 0) poll();
    keys.emplace_back(figures.Of(response), keys.size());
  }
  PolledSort(keys, std::less<>(), poll);
  std::vector<UnexpectedResponse> sorted;
  sorted.reserve(responses.size());
  for (const auto& [key, at] : keys) sorted.push_back(std::move(responses[at]));
  responses = std::move(sorted);
}

}  // namespace tessaly
