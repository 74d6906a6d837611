#include "requests/arrange_option.h"

#include <string_view>

#include "support/bytes.h"
#include "support/failure.h"

namespace tessaly {

namespace {

constexpr std::string_view kOrderLetters = "MNAF";
enum Direction { kAscend, kDescend };

}  // namespace

bool GivesOrder(const RequestOptions& options) {
  return options.Given("order") || options.Given("direction");
}

std::vector<std::string> OrderCodes(std::string_view title, const RequestOptions& options) {
  const auto directions = options.Choices("direction", {"ascend", "descend"});
  if (!directions || directions->empty()) throw Refusal{std::string(title) + ": Please select Ascend/Descend"};
  const auto orders = options.Choices("order", {"measure", "number", "label", "fit"});
  if (!orders || orders->empty()) throw Refusal{std::string(title) + ": Please select Measure/Number/... order"};
  std::vector<std::string> codes;
  for (const std::size_t order : *orders) {
    for (const std::size_t direction : *directions) {
      const char letter = direction == kAscend ? kOrderLetters[order] : LowerAscii(kOrderLetters[order]);
      codes.push_back(UpperAscii(letter) == 'N' ? std::string(1, letter) : std::string{letter, 'N'});
    }
  }
  return codes;
}

}  // namespace tessaly
