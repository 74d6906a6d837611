#include "estimate/point_biserial.h"

#include <algorithm>
#include <cmath>

namespace tessaly {

namespace {

/// Counts of a Poisson scale have no top of their own.
constexpr std::int32_t kPoissonTop = 255;
/// Spreads below this share of their sum of squares are rounding: nothing varies.
constexpr double kRounding = 1e-12;

/// The response as the element at this position sees it.
double ResponseAt(const ObservedElement& own, const Observation& obs) {
  const std::int32_t top = obs.CurrentType == ModelType::Poisson ? kPoissonTop : obs.CurrentTop;
  return own.Negative ? top - obs.ObsResponse : obs.ObsResponse;
}

}  // namespace

PointBiserial::PointBiserial(Analysis& analysis, ObservationStore& store, RunControl& control, Console& console)
    : analysis_(analysis), store_(store), control_(control), console_(console) {}

void PointBiserial::CountsForCorrelation() {
  console_.ShowMessage("Computing point-biserial correlation: counts and scores ...");
  totals_.assign(analysis_.Elements.ElementCount(), {});
  for (const Observation& obs : ObservationPass(store_, analysis_, control_, console_)) {
    if (control_.FastForward) return;
    if (!(obs.Replication > 0)) continue;
    for (const ObservedElement& own : obs.Elements) {
      if (own.CurrentElement == kNoElement) continue;
      Totals& totals = totals_[own.CurrentElement];
      const double w = static_cast<double>(obs.ObsWeight);
      totals.ObservedCount += w;
      totals.ObservedScore += w * ResponseAt(own, obs);
    }
  }
}

void PointBiserial::Correlate() {
  console_.ShowMessage("Calculating point-biserial correlations");
  sums_.assign(analysis_.Elements.ElementCount(), {});
  listed_.reserve(static_cast<std::size_t>(analysis_.Fields.ActiveFacetCount()));
  if (!MarkFacets()) return;
  for (const Observation& obs : ObservationPass(store_, analysis_, control_, console_)) {
    if (control_.FastForward) return;
    if (!TakesPart(obs.Status)) continue;
    ListElements(obs);
    AddPairs(obs);
  }
  for (const ElementIndex element : sums_.all())
    analysis_.Elements.Fit[element].Correlation = Correlation(sums_[element]);
}

/// Whether any facet can have correlations.
bool PointBiserial::MarkFacets() {
  const auto seenTwice = [&](const Facet& facet) {
    std::int32_t seen = 0;
    for (const ElementIndex element : facet.Elements())
      if (totals_[element].ObservedCount != 0) ++seen;
    return seen > 1;
  };
  inCorrelation_.clear();
  for (const ActivePosition& position : analysis_.Fields.Positions)
    inCorrelation_.push_back(seenTwice(analysis_.Facets[position.PositionFacet]));
  return std::find(inCorrelation_.begin(), inCorrelation_.end(), true) != inCorrelation_.end();
}

/// An element that stands in the observation twice takes no part in it.
void PointBiserial::ListElements(const Observation& obs) {
  const auto occurrences = [&](ElementIndex element) {
    return std::count_if(obs.Elements.begin(), obs.Elements.end(),
                         [&](const ObservedElement& own) { return own.CurrentElement == element; });
  };
  listed_.clear();
  for (std::size_t at = obs.Elements.size(); at-- > 0;) {
    const ObservedElement& own = obs.Elements[at];
    if (own.CurrentElement == kNoElement || !inCorrelation_[at]) continue;
    if (analysis_.Fields.RepeatedFacet && occurrences(own.CurrentElement) > 1) continue;
    if (totals_[own.CurrentElement].ObservedCount > 0) listed_.push_back(&own);
  }
}

void PointBiserial::AddPairs(const Observation& obs) {
  for (const ObservedElement* const own : listed_) {
    PairSums& sums = sums_[own->CurrentElement];
    const double x = ResponseAt(*own, obs);
    for (const ObservedElement* const other : listed_)
      if (other != own) AddPair(sums, x, totals_[other->CurrentElement], static_cast<double>(obs.ObsWeight));
  }
}

void PointBiserial::AddPair(PairSums& sums, double x, const Totals& partner, double w) const {
  double y = 0;
  if (analysis_.Settings.PtBiserial == 'Y') {
    const double others = partner.ObservedCount - w;
    if (!(others > 0)) return;
    y = (partner.ObservedScore - x * w) / others;
  } else {
    y = partner.ObservedScore / partner.ObservedCount;
  }
  if (y < 0) return;
  sums.N += w;
  sums.X += w * x;
  sums.XX += w * x * x;
  sums.Y += w * y;
  sums.YY += w * y * y;
  sums.XY += w * x * y;
}

float PointBiserial::Correlation(const PairSums& sums) const {
  const auto spread = [&](double squares, double sum) {
    const double scaled = sums.N * squares;
    const double difference = scaled - sum * sum;
    return difference > kRounding * scaled ? difference : 0.0;
  };
  const double spreads = spread(sums.YY, sums.Y) * spread(sums.XX, sums.X);
  if (!(spreads > static_cast<double>(analysis_.Settings.SmallestNumber))) return 0;
  return static_cast<float>(std::clamp((sums.N * sums.XY - sums.Y * sums.X) / std::sqrt(spreads), -1.0, 1.0));
}

}  // namespace tessaly
