#include "spec/list_elements.h"

#include <algorithm>
#include <string>

#include "spec/element_lookup.h"
#include "spec/labels_block.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

/// Most element numbers in all facets, ranges counted by element.
#ifdef TESSALY_FEW_ELEMENTS
constexpr std::int64_t kMostElements = 10000;
#else
constexpr std::int64_t kMostElements = 4000000;
#endif
/// Ranges longer than this are announced.
constexpr std::int64_t kLongRange = 999;

struct FacetElement {
  FacetNumber Facet;
  std::int32_t Number;

  friend auto operator<=>(const FacetElement&, const FacetElement&) = default;
};

/// Collects element numbers of facets.
class ElementLister {
 public:
  ElementLister(std::int32_t facetCount, std::int32_t nullElement, Console& console)
      : declared_(facetCount), nullElement_(nullElement), console_(console) {
    console_.ShowProgress("Processing element numbers and labels: facet", false);
  }

  void BeginFacet(const SplitLine& line) {
    const IntegerReading reading = ParseInt(line.Value(1), declared_.size());
    if (!reading.Good() || reading.Value < 1) throw Halt{FailureCode::FacetOutOfRange, {}};
    facet_ = {reading.Value};
    if (declared_[facet_] != 0) throw Halt{FailureCode::FacetTwice, {}};
    declared_[facet_] = 1;
    console_.ShowProgress(GeneralText(facet_.value), false);
  }

  void AddRange(const SplitLine& line) {
    const AscendingRange range = ElementsOf(line.Value(1));
    const std::int64_t count = std::int64_t{range.High} - range.Low + 1;
    if (count > kLongRange) AnnounceLongRange(range, count);
    const auto listed = static_cast<std::int64_t>(list_.size());
    if (listed + count > kMostElements) throw Halt{FailureCode::TooManyElements, GeneralText(listed)};
    for (std::int64_t number = range.Low; number <= range.High; ++number) Add(static_cast<std::int32_t>(number));
  }

  /// All elements in ascending order, each once.
  const std::vector<FacetElement>& Finish() {
    console_.ShowProgress("", true);
    if (!std::is_sorted(list_.begin(), list_.end())) {
      console_.ShowMessage("Sorting element labels: ");
      std::sort(list_.begin(), list_.end());
      console_.ShowMessage("Loading element labels: ");
    }
    list_.erase(std::unique(list_.begin(), list_.end()), list_.end());
    return list_;
  }

 private:
  void AnnounceLongRange(const AscendingRange& range, std::int64_t count) {
    std::string text = ".adding" + GeneralText(range.Low) + "-" + BareText(range.High);
    if (range.Low != 1) text += " =" + GeneralText(count);
    console_.ShowMessage(text + " elements to list.");
  }

  void Add(std::int32_t number) {
    if (number != nullElement_) {
      list_.push_back({facet_, number});
      return;
    }
    console_.ShowMessage("");
    console_.ShowWarning("Warning (16)! Null element" + GeneralText(number) + " is specified in Labels= for facet" +
                         GeneralText(facet_.value));
  }

  Table<FacetNumber, char> declared_;
  std::int32_t nullElement_;
  Console& console_;
  FacetNumber facet_{0};
  std::vector<FacetElement> list_;
};

/// Gives the facet its records, `first` to `last`, whose numbers ascend.
void SetRecords(Facet& facet, ElementIndex first, ElementIndex last, const ElementTable& elements) {
  facet.FacetFirstElement = first;
  facet.FacetLastElement = last;
  facet.FacetElementCount = last.value - first.value + 1;
  facet.FacetLowestNumber = elements.ElementNumber[first];
  facet.FacetHighestNumber = elements.ElementNumber[last];
  facet.FacetDense = facet.FacetHighestNumber - facet.FacetLowestNumber == last.value - first.value;
}

void BuildTables(const std::vector<FacetElement>& list, FacetTable& facets, ElementTable& elements) {
  elements.Create(static_cast<std::int32_t>(list.size()));
  ElementIndex first{1};
  for (const ElementIndex element : elements.ElementNumber.all()) {
    const std::size_t at = static_cast<std::size_t>(element.value - 1);
    elements.ElementNumber[element] = list[at].Number;
    const bool lastOfFacet = at + 1 == list.size() || list[at + 1].Facet != list[at].Facet;
    if (!lastOfFacet) continue;
    SetRecords(facets[list[at].Facet], first, element, elements);
    first = element + 1;
  }
}

}  // namespace

AscendingRange ElementsOf(std::string_view text) {
  const std::optional<ElementRange> range = ParseElementRange(text);
  if (!range) throw Halt{FailureCode::InvalidElementNumber, {}};
  return {std::min(range->First, range->Second), std::max(range->First, range->Second)};
}

void ListElements(const std::vector<StoredLine>& block, FacetTable& facets, ElementTable& elements,
                  std::int32_t nullElement, InputLine& at, Console& console) {
  ElementLister lister(facets.size(), nullElement, console);
  ForEachLabelsLine(
      block, at, [&](const SplitLine& line) { lister.BeginFacet(line); },
      [&](const SplitLine& line) { lister.AddRange(line); });
  const std::vector<FacetElement>& list = lister.Finish();
  if (list.empty()) throw Halt{FailureCode::NoElementNumbers, {}};
  BuildTables(list, facets, elements);
}

}  // namespace tessaly
