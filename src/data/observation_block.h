// Neighbouring observations side by side, and how each counts at the present estimates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "data/observation_store.h"
#include "state/analysis.h"

namespace tessaly {

/// How an observation counts in the present state of the estimation.
enum class ReadStatus : std::int16_t {
  /// All elements are measurable.
  Usable = 1,
  OneExtreme = 2,
  CategoryNotInUse = -1,
  /// An element is unobserved or unmeasurable.
  ElementNotInUse = -2,
  SeveralExtreme = -3,
  /// No position with a measurable element.
  NothingMeasurable = -4,
};

/// Whether passes use an observation of this status.
constexpr bool TakesPart(ReadStatus status) {
  return static_cast<std::int16_t>(status) > 0;
}

/// What all observations of a cell have in common.
struct CellFacts {
  StatementNumber Statement{0};
  ScaleNumber Scale{0};
  ModelType Type = ModelType::RatingScale;
  std::int16_t Top = 0;
  float Weight = 1;
  /// By raw response.
  const std::int16_t* Ordinals = nullptr;
  /// The statement if it has positions marked `-`, else null.
  const ModelStatement* Negatives = nullptr;

  /// Whether observations are evaluated side by side: rating scales and dichotomies. Binomial trials and counts are
  /// evaluated one by one.
  bool SideBySide() const { return Top == 1 || Type == ModelType::RatingScale; }
  /// Whether position `at`, from 0, is marked `-`.
  bool Negative(std::size_t at) const {
    return Negatives != nullptr && Negatives->Negative({static_cast<std::int32_t>(at) + 1});
  }
};

/// Marks of the elements of an observation are joined.
enum class ElementMark : std::uint8_t { Nothing = 0, Measurable = 1, Uncommon = 2 };

/// What all observations of an element have in common.
struct ElementFacts {
  /// As its facet's sign makes it, logit; 0 for the null element.
  float SignedMeasure = 0;
  tessaly::ElementStatus Status = tessaly::ElementStatus::Unobserved;
  /// What it says about an observation that it is in.
  ElementMark Mark = ElementMark::Nothing;
};

/// What holds for all observations of one pass. Copied together, because it is looked up for each of them.
struct PassFacts {
  explicit PassFacts(const Analysis& analysis);
  PassFacts(const PassFacts&) = delete;
  PassFacts& operator=(const PassFacts&) = delete;

  const CellFacts& Cell(CellNumber cell) const { return Cells[static_cast<std::size_t>(cell.value)]; }
  const ElementFacts& Element(ElementIndex element) const { return Elements[static_cast<std::size_t>(element.value)]; }
  /// Whether the element collects an observation that counts as `status`: extreme elements collect all that take part.
  bool Collects(ElementIndex element, ReadStatus status) const {
    return element.value > 0 && (status == ReadStatus::Usable || BelowActive(Element(element).Status));
  }

  std::vector<CellFacts> Cells;
  std::vector<ElementFacts> Elements;

 private:
  /// Ordinals as long as scales have none of their own: raw categories count as they are.
  std::vector<std::int16_t> rawOrdinals_;
};

/// Observations that follow each other, in columns.
struct ObservationBlock {
  static constexpr std::size_t kCapacity = 256;

  explicit ObservationBlock(std::size_t positions);

  const CellFacts& CellOf(std::size_t at) const { return Facts->Cell(Cell[at]); }
  /// Elements of observation `at` by position; entry 0 is position 1.
  ElementIndex* Row(std::size_t at) { return Elements.data() + at * Positions; }
  const ElementIndex* Row(std::size_t at) const { return Elements.data() + at * Positions; }

  const PassFacts* Facts = nullptr;
  std::size_t Positions;
  /// Number of the first observation, from 1.
  std::int64_t First = 1;
  std::size_t Size = 0;
  std::vector<CellNumber> Cell;
  std::vector<float> Replication;
  /// Raw response after recoding, and its ordinal.
  std::vector<std::int16_t> Response;
  std::vector<std::int16_t> Ordinal;
  /// Replication times model weight times element weights.
  std::vector<float> Weight;
  /// Net measure of the model, logit: a higher one always means a higher expected category.
  std::vector<float> Measure;
  std::vector<ReadStatus> Status;
  std::vector<ElementIndex> Elements;
};

/// Reads the stored observations from the first to the last.
class BlockReader {
 public:
  BlockReader(ObservationStore& store, const Analysis& analysis);

  const PassFacts& Facts() const { return facts_; }
  std::int64_t ValidResponses() const { return store_.ValidResponses(); }
  std::size_t Positions() const { return positions_; }
  /// Fills `block` with the next observations; gives false when there are none left. Throws `Halt{WorkFileProblem}`.
  bool Read(ObservationBlock& block);

 private:
  void UnpackResponses(const unsigned char* records, ObservationBlock& block);
  void UnpackElements(const unsigned char* records, ObservationBlock& block);
  template <int kWidth>
  void UnpackPosition(const ElementLayout::Slot& slot, const unsigned char* records, ObservationBlock& block);
  void Settle(ObservationBlock& block) const;
  void Reckon(ObservationBlock& block, std::size_t at) const;
  static void CancelOpposites(const CellFacts& cell, ElementIndex* row, std::size_t positions);

  ObservationStore& store_;
  const ElementTable& elements_;
  PassFacts facts_;
  std::size_t positions_;
  std::int64_t next_ = 1;
  /// By place in the block, the marks of all elements. An uncommon observation has to be looked at by itself.
  std::vector<std::uint8_t> marks_;
};

}  // namespace tessaly
