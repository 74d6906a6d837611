// The element references of one data line: which element stands in each position, response by response.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/data_line.h"
#include "data/element_resolver.h"
#include "state/elements.h"
#include "state/facets.h"

namespace tessaly {

/// Most elements that a range in a data line may have: as many as `Labels=` may declare.
constexpr std::int64_t kLongestRange = 4000000;

/// `CurrentElementNumber` and `CurrentElement` of the line at hand. One column may hold a range of element numbers:
/// then the line has a response for each of them, and elements derived from that column change with it.
class LineReferences {
 public:
  LineReferences(const FieldMap& fields, const ElementTable& elements, ElementResolver& resolver, Console& console);

  /// Resolves all columns of `line`, which has them all, for its first response. Throws `Halt{SecondRange}`,
  /// `Halt{RangeTooLong}`, and `Halt{DvaluesCircular}` for columns derived from each other.
  void Resolve(DataLine& line) {
    rangePosition_ = {0};
    rangeStep_ = 1;
    bool allPlain = derived_.empty() && !derivedCircular_;
    for (const ColumnPlan& plan : plans_) {
      const DataField& field = line.Field(plan.Column.value);
      const ElementIndex plain = plan.PlainNumbers.Find(field.Number);
      if (plain.value >= 0) {
        resolver_.FoundDense();
        Set(plan.Position, {field.Number, plain});
      } else {
        ResolveText(plan, field);
        allPlain = false;
      }
    }
    allKnown_ = allPlain;
    if (!allPlain) Complete(line);
  }
  /// Moves on to the next response of a range. Throws `Halt{InvalidTarget}` when a derived reference fails.
  void NextOfRange(DataLine& line);

  /// Position of the range, 0 for none; whether its elements matter to any model; the number of responses.
  PositionNumber RangePosition() const { return rangePosition_; }
  bool RangeInUse() const { return rangePosition_.value != 0 && fields_.Positions[rangePosition_].PositionInUse; }
  std::int64_t RangeLength() const { return rangePosition_.value == 0 ? 1 : rangeLength_; }
  /// Element number `step` of the range, from 1.
  std::int32_t RangeNumber(std::int64_t step) const {
    return static_cast<std::int32_t>(range_.First + (range_.First < range_.Second ? step - 1 : 1 - step));
  }

  /// Every position has an element or needs none.
  bool AllKnown() const { return allKnown_; }
  /// By position; entry 0 is position 1.
  const std::int32_t* Numbers() const { return numbers_.data(); }
  const ElementIndex* Elements() const { return elements_.data(); }
  ElementReference At(PositionNumber position) const {
    const auto at = static_cast<std::size_t>(position.value - 1);
    return {numbers_[at], elements_[at]};
  }

 private:
  struct ColumnPlan {
    ColumnNumber Column;
    PositionNumber Position;
    FacetNumber Facet;
    bool InUse;
    DenseNumbers PlainNumbers;
  };

  void OrderDerived();
  void Set(PositionNumber position, ElementReference reference) {
    const auto at = static_cast<std::size_t>(position.value - 1);
    numbers_[at] = reference.Number;
    elements_[at] = reference.Element;
  }
  void ResolveText(const ColumnPlan& plan, const DataField& field);
  /// Resolves the derived columns and finds out whether all is known.
  void Complete(DataLine& line);
  void OpenRange(const ColumnPlan& plan, std::string_view text, ElementRange range);
  void OpenUnusedRange(const ColumnPlan& plan, std::string_view text);
  void Derive(const ColumnPlan& plan, DataLine& line);
  bool HasLabelText(const DataColumn& column, ElementIndex source) const;
  std::string DerivedText(const DataColumn& column, ElementIndex source) const;
  void UpdateAllKnown();

  const FieldMap& fields_;
  const ElementTable& elementTable_;
  ElementResolver& resolver_;
  Console& console_;
  std::vector<ColumnPlan> plans_;
  /// Derived columns in use, each behind the one it is derived from.
  std::vector<ColumnPlan> derived_;
  bool derivedCircular_ = false;
  bool dvaluesUsed_ = false;

  std::vector<std::int32_t> numbers_;
  std::vector<ElementIndex> elements_;
  bool allKnown_ = true;
  PositionNumber rangePosition_{0};
  ElementRange range_;
  std::int64_t rangeLength_ = 1;
  std::int64_t rangeStep_ = 1;
};

}  // namespace tessaly
