#include "requests/nearest_word.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tessaly {

namespace {

constexpr std::size_t kLongest = 40;

std::size_t Distance(std::string_view a, std::string_view b) {
  a = a.substr(0, kLongest);
  b = b.substr(0, kLongest);
  std::array<std::array<std::size_t, kLongest + 1>, kLongest + 1> steps{};
  for (std::size_t i = 0; i <= a.size(); ++i) steps[i][0] = i;
  for (std::size_t j = 0; j <= b.size(); ++j) steps[0][j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = steps[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      steps[i][j] = std::min({replaced, steps[i - 1][j] + 1, steps[i][j - 1] + 1});
      const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (exchanged) steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
    }
  }
  return steps[a.size()][b.size()];
}

}  // namespace

std::string_view NearestWord(std::string_view word, std::span<const std::string_view> known) {
  const auto nearest = std::min_element(known.begin(), known.end(), [&](std::string_view a, std::string_view b) {
    return Distance(word, a) < Distance(word, b);
  });
  return nearest == known.end() ? std::string_view() : *nearest;
}

std::string Suggestion(std::string_view word, std::span<const std::string_view> known) {
  const std::string_view nearest = NearestWord(word, known);
  return nearest.empty() ? std::string() : " Did you mean " + std::string(nearest) + "?";
}

}  // namespace tessaly
