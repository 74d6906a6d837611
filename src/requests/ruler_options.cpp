#include "requests/ruler_options.h"

#include <string>
#include <vector>

#include "reports/vertical_spec.h"
#include "support/bytes.h"

namespace tessaly {

namespace {

/// The dimensions of as many rulers as there are, with `word` as the last item of each.
std::string WithWord(const std::string& yardstick, std::size_t rulers, std::string_view word) {
  constexpr std::size_t kNumbers = 4;
  const std::vector<std::string_view> texts = SplitRulers(yardstick);
  std::string result;
  for (std::size_t at = 0; at < rulers; ++at) {
    std::vector<std::string> items;
    if (at < texts.size()) {
      for (const std::string_view item : SplitAt(texts[at], ',')) items.emplace_back(item);
    }
    items.resize(kNumbers, "");
    items.emplace_back(word);
    result += "(" + Joined(items, ",") + ")";
  }
  return result;
}

}  // namespace

void ReadRulerOptions(const RequestOptions& options, Settings& settings) {
  if (const auto vertical = options.Text("vertical")) settings.VerticalSpec = UpperAscii(*vertical);
  if (const auto yardstick = options.Text("yardstick")) settings.YardstickSpec = *yardstick;
  if (const auto extremes = options.Choice("extremes", {"ends", "measure"}))
    settings.YardstickSpec =
        WithWord(settings.YardstickSpec, SplitRulers(settings.VerticalSpec).size(), *extremes == 0 ? "End" : "Measure");
}

}  // namespace tessaly
