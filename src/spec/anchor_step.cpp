#include "spec/anchor_step.h"

#include <algorithm>
#include <cmath>

#include "spec/labels_block.h"
#include "spec/setting_values.h"
#include "support/bytes.h"
#include "support/expression.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// A group text "$nWw" stands for the w characters of the label from the n-th on; other texts stand for themselves.
std::string GroupNumberText(std::string_view group, std::string_view label) {
  if (group.empty() || group.front() != '$') return std::string(group);
  group.remove_prefix(1);
  const std::size_t letter = group.find_first_of("Ww");
  const std::int32_t start = RoundToLong(LeadingNumber(group));
  const std::int32_t width =
      letter == std::string_view::npos ? 1 : RoundToLong(LeadingNumber(group.substr(letter + 1)));
  if (start < 1 || width < 1 || static_cast<std::size_t>(start) > label.size()) return {};
  return std::string(TrimBlanks(label.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(width))));
}

bool IsGroupAnchored(char facetType) {
  return facetType == 'G' || facetType == 'X';
}

/// Settles one element after the other.
class AnchorStep {
 public:
  AnchorStep(const Table<ElementIndex, std::string>& groups, Analysis& analysis, Console& console)
      : groups_(groups),
        settings_(analysis.Settings),
        facets_(analysis.Facets),
        elements_(analysis.Elements),
        at_(analysis.Input),
        console_(console) {}

  void Settle(ElementIndex element, FacetNumber facetNumber) {
    Facet& facet = facets_[facetNumber];
    const std::int16_t group = GroupOf(element);
    // Until a value anchors it, a group constrains nothing.
    elements_.ElementGroup[element] = static_cast<std::int16_t>(-group);
    facet.FacetGroupMax = std::max(facet.FacetGroupMax, group);
    if (facet.FacetType() == 'D') {
      elements_.ElementStatus[element] = ElementStatus::Anchored;
      return;
    }
    const std::string& text = elements_.ElementAnchorText[element];
    const float value = EvaluateExpression(text);
    if (!IsNumberOf(double(value), text)) return TellNoNumber(element, text);
    TakeValue(element, facet.FacetType(), group, Logit(element, value));
    if (IsGroupAnchored(facet.FacetType()) && group == 0) valueWithoutGroup_ = facetNumber;
  }

  /// The last group-anchored facet with a value of an element that has no group; 0 for none.
  FacetNumber ValueWithoutGroup() const { return valueWithoutGroup_; }

 private:
  std::string GroupText(ElementIndex element) const { return groups_.empty() ? std::string() : groups_[element]; }

  /// The element as messages quote it: number, label, anchor, group.
  std::string Quoted(ElementIndex element) const {
    return BareText(elements_.ElementNumber[element]) + "," + elements_.ElementLabel[element] + "," +
           elements_.ElementAnchorText[element] + "," + GroupText(element);
  }

  void TellNoNumber(ElementIndex element, const std::string& text) {
    if (text.empty() || toldNoNumber_) return;
    toldNoNumber_ = true;
    console_.ShowWarning("Anchoring or starting value is not a number: " + QuotedLine(Quoted(element)) +
                         ". A label cannot hold a comma");
  }

  std::int16_t GroupOf(ElementIndex element) {
    const std::string text = GroupNumberText(GroupText(element), elements_.ElementLabel[element]);
    if (text.empty()) return 0;
    const IntegerReading reading = ParseInt(text, kHighestGroup);
    if (reading.Good()) return static_cast<std::int16_t>(reading.Value);
    console_.ShowWarning("Invalid group number: " + text + " (" + Quoted(element) + " )");
    at_ = {};
    throw Halt{FailureCode::InvalidGroup, {}};
  }

  float Logit(ElementIndex element, float value) const {
    const float logit = (value - settings_.Umean) / settings_.Uscale;
    if (std::abs(logit) <= settings_.HardwareExponent) return logit;
    throw FatalError{"Failure (20)! Anchor value outside range: " + BareText(logit) + " (" + Quoted(element) + ")"};
  }

  void TakeValue(ElementIndex element, char facetType, std::int16_t group, float logit) {
    elements_.ElementMeasure[element] = logit;
    elements_.ElementStats[element].AnchorValue = logit;
    const bool heldInGroup = IsGroupAnchored(facetType) && group > 0;
    if (heldInGroup) elements_.ElementGroup[element] = group;
    if (heldInGroup || facetType == 'A') {
      elements_.ElementStatus[element] = ElementStatus::Anchored;
    } else if (logit == 0) {
      // A starting value of 0 must not look like no value.
      elements_.ElementStats[element].AnchorValue = settings_.SmallestNumber;
    }
  }

  const Table<ElementIndex, std::string>& groups_;
  const Settings& settings_;
  FacetTable& facets_;
  ElementTable& elements_;
  InputLine& at_;
  Console& console_;
  FacetNumber valueWithoutGroup_{0};
  bool toldNoNumber_ = false;
};

}  // namespace

void AnchorElements(const Table<ElementIndex, std::string>& groups, Analysis& analysis, Console& console) {
  AnchorStep step(groups, analysis, console);
  for (const FacetNumber facet : analysis.Facets.all())
    for (const ElementIndex element : analysis.Facets[facet].Elements()) step.Settle(element, facet);
  const FacetNumber facet = step.ValueWithoutGroup();
  if (facet.value == 0) return;
  console.ShowWarning("Warning (13)! Measure values specified for elements in group-anchored facet" +
                      GeneralText(facet.value) + " without a group number");
}

}  // namespace tessaly
