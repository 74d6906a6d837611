#include "graphs/curve_plot.h"

#include <algorithm>
#include <array>

namespace tessaly {

namespace {

struct KindTitles {
  GraphKind Kind;
  std::string_view Window;
  std::string_view Axis;
};

constexpr std::array kTitles{
    KindTitles{GraphKind::CategoryProbability, "Category Probability Curves", "Category Probability"},
    KindTitles{GraphKind::ExpectedScore, "Expected Score ICC", "Score on Item"},
    KindTitles{GraphKind::CumulativeProbability, "Cumulative Probability Plot", "Cumulative Probability"},
    KindTitles{GraphKind::ItemInformation, "Information Function", "Information"},
    KindTitles{GraphKind::CategoryInformation, "Category Information Function", "Category Information"},
    KindTitles{GraphKind::ConditionalProbability, "Conditional Probability Plot", "Conditional Probability"},
};

const KindTitles& TitlesOf(GraphKind kind) {
  const auto found = std::find_if(kTitles.begin(), kTitles.end(), [&](const auto& row) { return row.Kind == kind; });
  return found == kTitles.end() ? kTitles.front() : *found;
}

}  // namespace

std::string_view WindowTitle(GraphKind kind) {
  return TitlesOf(kind).Window;
}

std::string_view AxisTitle(GraphKind kind) {
  return TitlesOf(kind).Axis;
}

}  // namespace tessaly
