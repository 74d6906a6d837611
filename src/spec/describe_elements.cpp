#include "spec/describe_elements.h"

#include <cmath>
#include <optional>

#include "spec/element_lookup.h"
#include "spec/labels_block.h"
#include "spec/list_elements.h"
#include "spec/setting_values.h"
#include "spec/target_elements.h"
#include "support/bytes.h"
#include "support/expression.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Most bytes of text that ranges of elements may share out.
constexpr std::int64_t kMostTextBytes = std::int64_t{1} << 30;

/// What an element line says.
struct ElementLine {
  AscendingRange Numbers;
  std::string_view Label;
  std::string_view Anchor;
  std::string_view Group;
  std::optional<float> Weight;
  std::optional<double> Target;
};

ElementLine ElementLineOf(const SplitLine& line) {
  ElementLine element{ElementsOf(line.Value(1)), line.Value(2), line.Value(3), line.Value(4), {}, {}};
  if (const float weight = EvaluateExpression(line.Value(5)); IsNumberOf(double(weight), line.Value(5)))
    element.Weight = weight;
  if (const double target = ExactValue(line.Value(6)); IsNumberOf(target, line.Value(6))) element.Target = target;
  return element;
}

class Describer {
 public:
  Describer(FacetTable& facets, ElementTable& elements, std::int32_t nullElement, InputLine& at, Console& console)
      : facets_(facets), elements_(elements), nullElement_(nullElement), at_(at), console_(console) {}

  void DescribeFacet(const SplitLine& line) {
    facet_ = {ParseInt(line.Value(1), facets_.size()).Value};
    Facet& facet = facets_[facet_];
    facet.FacetLabel = line.Value(line.Value(2).empty() ? 1 : 2);
    facet.FacetFlags = UpperAscii(line.Value(3)) + ' ';
    const std::int32_t priority = WholeValue(line.Value(4));
    if (priority >= 0 && IsNumberOf(priority, line.Value(4))) facet.FacetPriority = priority;
  }

  void Describe(const SplitLine& split) {
    if (split.Values.size() < 2) return;
    const ElementLine line = ElementLineOf(split);
    CountText(line);
    for (std::int64_t number = line.Numbers.Low; number <= line.Numbers.High; ++number)
      DescribeElement(static_cast<std::int32_t>(number), line);
    if (line.Target) SetTargets(line, split.Value(6));
  }

  Table<ElementIndex, std::string> TakeGroups() { return std::move(groups_); }

 private:
  void CountText(const ElementLine& line) {
    const auto bytes = static_cast<std::int64_t>(line.Label.size() + line.Anchor.size() + line.Group.size());
    textBytes_ += bytes * (std::int64_t{line.Numbers.High} - line.Numbers.Low + 1);
    if (textBytes_ > kMostTextBytes) throw Halt{FailureCode::TooManyElements, GeneralText(elements_.ElementCount())};
  }

  void DescribeElement(std::int32_t number, const ElementLine& line) {
    Facet& facet = facets_[facet_];
    if (number == nullElement_) {
      if (!line.Label.empty()) facet.FacetNullLabel = line.Label;
      return;
    }
    const ElementIndex element = FindElement(number, facet, elements_, nullElement_);
    if (!line.Label.empty()) TakeLabel(elements_.ElementLabel[element], line.Label, number);
    elements_.ElementAnchorText[element] = line.Anchor;
    if (!line.Group.empty() && groups_.empty()) groups_.assign(elements_.ElementCount(), {});
    if (!groups_.empty()) groups_[element] = line.Group;
    if (!line.Weight) return;
    elements_.ElementStats[element].ElementWeight = std::abs(*line.Weight);
    if (*line.Weight != 1) elements_.WeightsUsed = true;
  }

  void TakeLabel(std::string& label, std::string_view given, std::int32_t number) {
    const FacetNumber next{number};
    const bool headsFacet = number > facet_.value && facets_.holds(next) && !facets_[next].HasElements();
    if (headsFacet && !label.empty() && label != given && !toldTwice_) {
      toldTwice_ = true;
      console_.ShowWarning("Element" + GeneralText(number) + " of facet" + GeneralText(facet_.value) + " is labelled " +
                           QuotedLine(label) + ", then in line" + GeneralText(at_.LineNumber) + " " +
                           QuotedLine(given) + ". Is a * missing between two facets?");
    }
    label = given;
  }

  void SetTargets(const ElementLine& line, std::string_view text) {
    Facet& facet = facets_[facet_];
    const std::int32_t number = RoundToLong(*line.Target);
    const ElementIndex target =
        number == *line.Target ? FindElement(number, facet, elements_, nullElement_) : kUnspecifiedElement;
    if (target == kUnspecifiedElement)
      RefuseTarget(FailureCode::InvalidTarget,
                   "Invalid target element number: " + std::string(text) + " - Specification is: ");
    for (std::int64_t low = line.Numbers.Low; low <= line.Numbers.High; ++low) {
      const ElementIndex element = FindElement(static_cast<std::int32_t>(low), facet, elements_, nullElement_);
      if (element != kNoElement && !SetTarget(element, target, elements_))
        RefuseTarget(FailureCode::TargetCircular, "Target element numbers circular or nested too deep: ");
    }
  }

  /// The warning quotes the line, so that the report of the failure need not.
  [[noreturn]] void RefuseTarget(FailureCode failure, const std::string& warning) {
    console_.ShowWarning(warning + at_.LastLine);
    at_.LastLine.clear();
    throw Halt{failure, {}};
  }

  FacetTable& facets_;
  ElementTable& elements_;
  std::int32_t nullElement_;
  InputLine& at_;
  Console& console_;
  FacetNumber facet_{0};
  std::int64_t textBytes_ = 0;
  bool toldTwice_ = false;
  Table<ElementIndex, std::string> groups_;
};

/// A number stands in for every label that is missing.
void SetDefaultLabels(FacetTable& facets, ElementTable& elements, std::int32_t nullElement) {
  const auto numberAsLabel = [](std::string& label, std::int32_t number) {
    if (label.empty()) label = BareText(number);
  };
  for (const ElementIndex element : elements.ElementNumber.all())
    numberAsLabel(elements.ElementLabel[element], elements.ElementNumber[element]);
  for (const FacetNumber facet : facets.all()) {
    numberAsLabel(facets[facet].FacetLabel, facet.value);
    numberAsLabel(facets[facet].FacetNullLabel, nullElement);
  }
}

}  // namespace

Table<ElementIndex, std::string> DescribeElements(const std::vector<StoredLine>& block, FacetTable& facets,
                                                  ElementTable& elements, std::int32_t nullElement, InputLine& at,
                                                  Console& console) {
  Describer describer(facets, elements, nullElement, at, console);
  ForEachLabelsLine(
      block, at, [&](const SplitLine& line) { describer.DescribeFacet(line); },
      [&](const SplitLine& line) { describer.Describe(line); });
  FollowTargets(elements);
  SetDefaultLabels(facets, elements, nullElement);
  return describer.TakeGroups();
}

}  // namespace tessaly
