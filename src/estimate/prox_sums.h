// What a recount or PROX pass accumulates.
#pragma once

#include "data/observation_pass.h"
#include "state/elements.h"
#include "state/scales.h"

namespace tessaly {

/// Observed totals of elements and categories, made anew.
class ObservedTotals {
 public:
  ObservedTotals(ElementTable& elements, ScaleTables& scales) : elements_(elements), scales_(scales) {}

  void Add(const Observation& obs);
  /// Whether an observation was met all of whose elements are measurable.
  bool DataSeen() const { return dataSeen_; }

 private:
  ElementTable& elements_;
  ScaleTables& scales_;
  bool dataSeen_ = false;
};

/// Sums of the other positions' measures that each element met (Cohen 1979).
class ProxSums {
 public:
  explicit ProxSums(Table<ElementIndex, EstimationSums>& sums) : sums_(sums) {}

  void Add(const Observation& obs);
  /// A Poisson observation was met: counts have no PROX.
  bool PoissonSeen() const { return poissonSeen_; }

 private:
  Table<ElementIndex, EstimationSums>& sums_;
  bool poissonSeen_ = false;
};

}  // namespace tessaly
