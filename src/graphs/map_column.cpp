#include "graphs/map_column.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace tessaly {

namespace {

double Sum(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

}  // namespace

std::vector<double> ShareWidth(const std::vector<double>& natural, const std::vector<double>& least, double available) {
  std::vector<double> widths = natural;
  const double whole = Sum(natural);
  if (whole <= available) {
    for (double& width : widths) width *= available / whole;
    return widths;
  }
  const auto cutTo = [&](double most) {
    for (std::size_t at = 0; at < widths.size(); ++at) widths[at] = std::max(std::min(natural[at], most), least[at]);
  };
  double low = 0;
  double high = available;
  for (int halving = 0; halving < 40; ++halving) {
    const double middle = (low + high) / 2;
    cutTo(middle);
    (Sum(widths) > available ? high : low) = middle;
  }
  cutTo(low);
  return widths;
}

}  // namespace tessaly
