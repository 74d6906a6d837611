// New measures of one facet, with anchors, group means and the facet's center held in place.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "estimate/element_step.h"
#include "estimate/iteration_summary.h"
#include "state/elements.h"
#include "state/facets.h"
#include "state/settings.h"
#include "support/host.h"

namespace tessaly {

/// An element that was dropped as extreme.
struct DroppedElement {
  FacetNumber Facet{0};
  ElementIndex Element{0};
};

/// What the updates of an iteration leave behind besides the measures.
struct UpdateTrace {
  /// Counts must be made anew: an element became extreme or unmeasurable.
  bool Recount = false;
  std::optional<DroppedElement> FirstDropped;
  std::optional<DroppedElement> LastDropped;
  /// Facets that nothing holds in place, in this round of updates.
  std::int32_t UnconstrainedFacets = 0;
  /// An estimate left the range in PROX: go to JMLE at the next chance.
  bool ExtremeSwitch = false;
  /// The out-of-range warning of this iteration has been given, or is not to be.
  bool OutOfRangeTold = false;
};

/// Decides the status of each element of a facet, finds the offset that centering, anchors and groups ask for, and
/// moves the measures. One object serves one call of `Run`.
class FacetUpdate {
 public:
  FacetUpdate(FacetNumber facet, const Facet& properties, const StepRule& rule, bool firstPass,
              const Settings& settings, ElementTable& elements, Table<ElementIndex, EstimationSums>& sums)
      : number_(facet),
        facet_(properties),
        rule_(rule),
        firstPass_(firstPass),
        settings_(settings),
        elements_(elements),
        sums_(sums) {}

  /// Updates the facet and gives the moments of its measured elements (logit). Warns once per iteration of an estimate
  /// outside the `Hardware=` range, which is cut to it.
  RunningMoments Run(IterationSummary& summary, LargestResiduals& largest, UpdateTrace& trace, Console& console);

 private:
  /// Mean of what a set of elements would do.
  struct Slot {
    std::int32_t Count = 0;
    float Sum = 0;
    float Mean() const { return Sum / static_cast<float>(Count); }
  };

  void StatusRound(UpdateTrace& trace);
  ElementStatus NextStatus(ElementIndex element, UpdateTrace& trace);
  ElementStatus BecomeExtreme(ElementIndex element, ElementStatus status, UpdateTrace& trace);
  void AddExtreme(ElementIndex element);
  void DriftStep(ElementIndex element);
  void GroupStep(ElementIndex element);
  void CenterStep(ElementIndex element);
  float Offset(UpdateTrace& trace);
  RunningMoments MeasureRound(float offset, IterationSummary& summary, LargestResiduals& largest, UpdateTrace& trace,
                              Console& console);
  /// The change of an element that is free to move, or nothing if its measure stands.
  std::optional<float> FreeChange(ElementIndex element, float change, float offset);
  void ApplyChange(ElementIndex element, const ElementStepResult& step, IterationSummary& summary,
                   LargestResiduals& largest);
  void CheckRange(ElementIndex element, UpdateTrace& trace, Console& console);

  ElementStepResult Step(ElementIndex element);
  /// An element's step uses up its pass sums.
  void Tail(ElementIndex element);
  void MarkRecount(ElementIndex element, UpdateTrace& trace) const;
  bool GroupMember(ElementIndex element) const { return elements_.ElementGroup[element] > 0; }
  Slot& GroupSlot(ElementIndex element) { return groups_[static_cast<std::size_t>(elements_.ElementGroup[element])]; }

  FacetNumber number_;
  const Facet& facet_;
  StepRule rule_;
  bool firstPass_;
  const Settings& settings_;
  ElementTable& elements_;
  Table<ElementIndex, EstimationSums>& sums_;

  /// By group number; entry 0 is not used.
  std::vector<Slot> groups_;
  Slot drift_;
  Slot center_;
  bool anchorSeen_ = false;
  bool groupSeen_ = false;
  bool presetSeen_ = false;
};

}  // namespace tessaly
