#include "estimate/update_facet.h"

#include <algorithm>
#include <cmath>

#include "support/number_text.h"

namespace tessaly {

namespace {

/// Free elements follow half of what anchors and groups would do, so that the frame settles without swinging.
constexpr float kDriftShare = 0.5F;

}  // namespace

RunningMoments FacetUpdate::Run(IterationSummary& summary, LargestResiduals& largest, UpdateTrace& trace,
                                Console& console) {
  groups_.assign(static_cast<std::size_t>(facet_.FacetGroupMax) + 1, {});
  StatusRound(trace);
  return MeasureRound(Offset(trace), summary, largest, trace, console);
}

ElementStepResult FacetUpdate::Step(ElementIndex element) {
  return ElementStep(elements_.ElementStats[element], sums_[element], facet_.FacetPositive, rule_, settings_,
                     elements_.ElementMeasure[element]);
}

void FacetUpdate::Tail(ElementIndex element) {
  sums_[element].Information = 0;
  sums_[element].ProxWeight = 0;
}

void FacetUpdate::MarkRecount(ElementIndex element, UpdateTrace& trace) const {
  trace.Recount = true;
  if (!trace.FirstDropped) trace.FirstDropped = DroppedElement{number_, element};
  trace.LastDropped = DroppedElement{number_, element};
}

void FacetUpdate::StatusRound(UpdateTrace& trace) {
  for (const ElementIndex element : facet_.Elements()) {
    ElementStatus& status = elements_.ElementStatus[element];
    if (!WithoutMeasure(status)) {
      status = NextStatus(element, trace);
      ElementRecord& record = elements_.ElementStats[element];
      record.PossibleScore = std::fabs(record.PossibleScore);
    }
    if (WithoutMeasure(status)) elements_.ElementMeasure[element] = 0;
  }
}

ElementStatus FacetUpdate::NextStatus(ElementIndex element, UpdateTrace& trace) {
  const ElementRecord& record = elements_.ElementStats[element];
  const ElementStatus status = elements_.ElementStatus[element];
  if (!GroupMember(element) && status == ElementStatus::Anchored) {
    if (record.PossibleScore != 0) {
      anchorSeen_ = true;
      DriftStep(element);
    }
    return status;
  }
  if (record.PossibleScore == 0) {
    if (firstPass_ && record.ObservedCount == 0) return ElementStatus::Unobserved;
    // Its observations no longer count for anybody, extreme elements included.
    MarkRecount(element, trace);
    return ElementStatus::Unmeasurable;
  }
  if (!Measurable(status) && status != ElementStatus::OneDatum) {
    AddExtreme(element);
    return status;
  }
  if (record.ObservedScore == 0)
    return BecomeExtreme(element, facet_.FacetPositive ? ElementStatus::Minimum : ElementStatus::Maximum, trace);
  if (record.ObservedScore == std::fabs(record.PossibleScore))
    return BecomeExtreme(element, facet_.FacetPositive ? ElementStatus::Maximum : ElementStatus::Minimum, trace);
  if (record.PossibleScore < 0 || status == ElementStatus::OneDatum) {
    if (status != ElementStatus::OneDatum) MarkRecount(element, trace);
    return ElementStatus::OneDatum;
  }
  if (GroupMember(element) && status == ElementStatus::Anchored) {
    GroupStep(element);
  } else if (record.AnchorValue != 0 && rule_.Phase < Phase::Jmle) {
    presetSeen_ = true;
    DriftStep(element);
  } else if (status == ElementStatus::Active) {
    CenterStep(element);
  }
  return status;
}

ElementStatus FacetUpdate::BecomeExtreme(ElementIndex element, ElementStatus status, UpdateTrace& trace) {
  MarkRecount(element, trace);
  if (facet_.HasFlag('G')) {
    GroupStep(element);
  } else if (facet_.FacetCenter == Centering::CenteredWithExtremes) {
    CenterStep(element);
  }
  return status;
}

void FacetUpdate::AddExtreme(ElementIndex element) {
  if (GroupMember(element)) {
    if (facet_.HasFlag('G')) GroupStep(element);
  } else if (facet_.FacetCenter == Centering::CenteredWithExtremes) {
    CenterStep(element);
  }
}

void FacetUpdate::DriftStep(ElementIndex element) {
  const float change = Step(element).Change;
  Tail(element);
  ++drift_.Count;
  drift_.Sum += change;
}

void FacetUpdate::GroupStep(ElementIndex element) {
  groupSeen_ = true;
  const float change = Step(element).Change;
  const auto group = static_cast<std::size_t>(std::abs(elements_.ElementGroup[element]));
  ++groups_[group].Count;
  groups_[group].Sum += elements_.ElementMeasure[element] + change - elements_.ElementStats[element].AnchorValue;
}

void FacetUpdate::CenterStep(ElementIndex element) {
  const float change = Step(element).Change;
  ++center_.Count;
  center_.Sum += change + elements_.ElementMeasure[element];
}

float FacetUpdate::Offset(UpdateTrace& trace) {
  float offset = 0;
  if (center_.Count > 0 && !groupSeen_ && !anchorSeen_) {
    if (facet_.FacetCenter == Centering::NotCentered) {
      ++trace.UnconstrainedFacets;
    } else if (!presetSeen_) {
      offset = center_.Mean();
    }
  }
  if (drift_.Count > 0) offset = drift_.Mean() * kDriftShare;
  std::int32_t groups = 0;
  for (std::size_t group = groups_.size() - 1; group > 0; --group) {
    if (groups_[group].Count == 0) continue;
    ++groups;
    offset += groups_[group].Mean() * kDriftShare;
  }
  return groups > 1 ? offset / static_cast<float>(groups) : offset;
}

RunningMoments FacetUpdate::MeasureRound(float offset, IterationSummary& summary, LargestResiduals& largest,
                                         UpdateTrace& trace, Console& console) {
  RunningMoments measures;
  for (const ElementIndex element : facet_.Elements()) {
    const ElementStatus status = elements_.ElementStatus[element];
    if (WithoutMeasure(status)) continue;
    if (status != ElementStatus::Anchored || groupSeen_) {
      ElementStepResult step = Step(element);
      Tail(element);
      if (const auto change = FreeChange(element, step.Change, offset)) {
        step.Change = *change;
        ApplyChange(element, step, summary, largest);
        CheckRange(element, trace, console);
      }
    }
    if (Measurable(status)) measures.Add(static_cast<double>(elements_.ElementMeasure[element]));
  }
  return measures;
}

std::optional<float> FacetUpdate::FreeChange(ElementIndex element, float change, float offset) {
  const ElementRecord& record = elements_.ElementStats[element];
  if (GroupMember(element)) {
    const Slot& group = GroupSlot(element);
    if (group.Count > 1) return change - group.Mean();
    elements_.ElementMeasure[element] = record.AnchorValue;
    return {};
  }
  if (elements_.ElementStatus[element] == ElementStatus::Anchored) {
    elements_.ElementMeasure[element] = record.AnchorValue;
    return {};
  }
  if (record.AnchorValue != 0 && rule_.Phase < Phase::Jmle) return {};
  return change - offset;
}

void FacetUpdate::ApplyChange(ElementIndex element, const ElementStepResult& step, IterationSummary& summary,
                              LargestResiduals& largest) {
  float& measure = elements_.ElementMeasure[element];
  measure += step.Change;
  const ElementRecord& record = elements_.ElementStats[element];
  ResidualDetail detail;
  detail.Facet = number_;
  detail.Element = element;
  detail.Observed = record.ObservedScore;
  detail.Expected = sums_[element].ExpectedScore;
  detail.Residual = static_cast<double>(step.Residual);
  detail.Fraction = step.Fraction;
  detail.Value = measure;
  detail.Change = step.Change;
  detail.WithScores = rule_.Phase >= Phase::Jmle;
  KeepLargest(detail, summary, largest);
  if (!BelowActive(elements_.ElementStatus[element]) && LargerInSize(step.Change, summary.MaxActiveChange))
    summary.MaxActiveChange = step.Change;
}

void FacetUpdate::CheckRange(ElementIndex element, UpdateTrace& trace, Console& console) {
  float& measure = elements_.ElementMeasure[element];
  if (!Measurable(elements_.ElementStatus[element]) || std::fabs(measure) <= settings_.HardwareExponent) return;
  if (!trace.OutOfRangeTold) {
    console.ShowWarning("Warning (1)! Estimate out of range!  Facet" + GeneralText(number_.value) + " Element" +
                        GeneralText(elements_.ElementNumber[element]));
    trace.OutOfRangeTold = true;
  }
  if (rule_.Phase < Phase::Jmle) trace.ExtremeSwitch = true;
  measure = std::clamp(measure, -settings_.HardwareExponent, settings_.HardwareExponent);
}

}  // namespace tessaly
