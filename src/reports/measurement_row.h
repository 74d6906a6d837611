// One row of a measurement table: what it shows of an element, and the line.
#pragma once

#include <string>

#include "reports/measure_summaries.h"
#include "reports/measurement_layout.h"
#include "state/analysis.h"

namespace tessaly {

/// The rows of one facet.
class MeasurementRows {
 public:
  MeasurementRows(FacetNumber number, const Analysis& analysis);

  /// What the tables of the facet show: the optional columns that its elements need.
  const MeasurementColumns& Columns() const { return columns_; }
  /// The line of an element, in a layout of these columns.
  std::string Line(ElementIndex element, const MeasurementLayout& layout) const;
  /// Adds the element to the statistics of a table that lists it.
  void Summarize(ElementIndex element, RowSummaries& summaries) const;

 private:
  enum class Kind { Normal, Extreme, NonActive };

  MeasurementColumns ColumnsNeeded() const;
  Kind KindOf(ElementIndex element) const;
  double Score(ElementIndex element) const;
  double Count(ElementIndex element) const;
  double Average(ElementIndex element) const;
  double FairAverage(ElementIndex element) const;
  std::string Measure(ElementIndex element) const;
  std::string StandardError(ElementIndex element) const;
  std::string DisplacementText(float displacement) const;
  bool DisplacementIsNotable(ElementIndex element) const;
  std::string StatusMark(ElementIndex element) const;
  std::string Label(ElementIndex element) const;
  std::string SubsetNote(ElementIndex element) const;

  class Filling;

  FacetNumber number_;
  const Analysis& analysis_;
  const Facet& facet_;
  const ElementTable& elements_;
  const Settings& settings_;
  MeasurementColumns columns_;
};

}  // namespace tessaly
