#include "graphs/plot_frame.h"

#include <cmath>

namespace tessaly {

std::vector<std::vector<SvgPoint>> PlotFrame::Runs(const Series& curve) const {
  std::vector<std::vector<SvgPoint>> runs;
  bool open = false;
  for (const std::optional<CurvePoint>& point : curve.Points) {
    const bool shown = point && std::isfinite(point->X) && std::isfinite(point->Y);
    if (shown) {
      if (!open) runs.emplace_back();
      runs.back().push_back(At(*point));
    }
    open = shown;
  }
  return runs;
}

}  // namespace tessaly
