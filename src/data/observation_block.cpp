#include "data/observation_block.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace tessaly {

namespace {

constexpr auto kUncommon = static_cast<std::uint8_t>(ElementMark::Uncommon);

/// The place that a position of that many bytes holds.
template <int kWidth>
std::uint32_t PlaceIn(const unsigned char* bytes) {
  // Not three bytes at once: what is put together in memory cannot be read back before it has got there.
  if constexpr (kWidth == 3) return PlaceIn<2>(bytes) | std::uint32_t{bytes[2]} << 16;
  std::uint32_t place = 0;
  std::memcpy(&place, bytes, kWidth);
  return place;
}

}  // namespace

PassFacts::PassFacts(const Analysis& analysis) {
  const ScaleTables& scales = analysis.Scales;
  const bool prepared = scales.CategoryOrdinal.Categories() > 0;
  if (!prepared) {
    rawOrdinals_.resize(static_cast<std::size_t>(std::max<std::int32_t>(scales.RawCategoryLimit, 1)) + 1);
    std::iota(rawOrdinals_.begin(), rawOrdinals_.end(), std::int16_t{0});
  }
  for (const ModelCell& cell : analysis.Models.Cells) {
    const ModelStatement& statement = analysis.Models.Statements[cell.CellModel];
    Cells.push_back({cell.CellModel, cell.CellScale, statement.ModelType,
                     scales.Scales[cell.CellScale].ScaleTopCategory, statement.ModelWeight,
                     prepared ? scales.CategoryOrdinal.Row(cell.CellScale) : rawOrdinals_.data(),
                     statement.HasNegative() ? &statement : nullptr});
  }
  const ElementTable& elements = analysis.Elements;
  Elements.resize(static_cast<std::size_t>(elements.ElementCount()) + 1);
  for (const Facet& facet : analysis.Facets) {
    for (const ElementIndex element : facet.Elements()) {
      const float measure = elements.ElementMeasure[element];
      const ElementStatus status = elements.ElementStatus[element];
      Elements[static_cast<std::size_t>(element.value)] = {
          facet.FacetPositive ? measure : -measure, status,
          Measurable(status) ? ElementMark::Measurable : ElementMark::Uncommon};
    }
  }
}

ObservationBlock::ObservationBlock(std::size_t positions)
    : Positions(positions),
      Cell(kCapacity),
      Replication(kCapacity),
      Response(kCapacity),
      Ordinal(kCapacity),
      Weight(kCapacity),
      Measure(kCapacity),
      Status(kCapacity),
      Elements(kCapacity * positions) {}

BlockReader::BlockReader(ObservationStore& store, const Analysis& analysis)
    : store_(store),
      elements_(analysis.Elements),
      facts_(analysis),
      positions_(static_cast<std::size_t>(analysis.Fields.ActiveFacetCount())),
      marks_(ObservationBlock::kCapacity) {}

bool BlockReader::Read(ObservationBlock& block) {
  const std::int64_t left = store_.ValidResponses() - next_ + 1;
  const StoredRun run = store_.Fetch(next_, std::min<std::int64_t>(left, ObservationBlock::kCapacity));
  block.Facts = &facts_;
  block.First = next_;
  block.Size = static_cast<std::size_t>(run.Count);
  next_ += run.Count;
  if (block.Size == 0) return false;
  UnpackResponses(run.Observations, block);
  UnpackElements(run.Elements, block);
  Settle(block);
  return true;
}

void BlockReader::UnpackResponses(const unsigned char* records, ObservationBlock& block) {
  const CellFacts* const cells = facts_.Cells.data();
  CellNumber* const cellNumber = block.Cell.data();
  float* const replication = block.Replication.data();
  std::int16_t* const response = block.Response.data();
  std::int16_t* const ordinal = block.Ordinal.data();
  float* const weight = block.Weight.data();
  std::uint8_t* const marks = marks_.data();
  const bool weighted = elements_.WeightsUsed;
  const std::size_t size = block.Size;
  for (std::size_t at = 0; at < size; ++at, records += kObservationRecordLength) {
    const ObservationRecord record = UnpackObservation(records);
    const CellFacts& cell = cells[record.ObsCell.value];
    cellNumber[at] = record.ObsCell;
    replication[at] = record.Replication;
    response[at] = record.ObsResponse;
    const bool renumbered = cell.Top >= 1 && cell.Type == ModelType::RatingScale;
    ordinal[at] = renumbered ? cell.Ordinals[record.ObsResponse] : record.ObsResponse;
    weight[at] = record.Replication * cell.Weight;
    marks[at] = weighted || cell.Negatives != nullptr ? kUncommon : 0;
  }
  std::fill_n(block.Measure.begin(), size, 0.0F);
}

// Measures are added from the last position to the first: sums have one order.
void BlockReader::UnpackElements(const unsigned char* records, ObservationBlock& block) {
  const std::vector<ElementLayout::Slot>& slots = store_.Layout().Slots();
  for (std::size_t s = slots.size(); s-- > 0;) {
    const ElementLayout::Slot& slot = slots[s];
    switch (slot.Width) {
      case 1:
        UnpackPosition<1>(slot, records, block);
        break;
      case 2:
        UnpackPosition<2>(slot, records, block);
        break;
      case 3:
        UnpackPosition<3>(slot, records, block);
        break;
      default:
        UnpackPosition<4>(slot, records, block);
    }
  }
}

template <int kWidth>
void BlockReader::UnpackPosition(const ElementLayout::Slot& slot, const unsigned char* records,
                                 ObservationBlock& block) {
  const auto length = static_cast<std::size_t>(store_.Layout().ElementRecordLength());
  const unsigned char* bytes = records + slot.Offset;
  const std::size_t positions = block.Positions;
  const std::size_t size = block.Size;
  const ElementFacts* const elements = facts_.Elements.data();
  ElementIndex* element = block.Elements.data() + slot.At;
  float* const measure = block.Measure.data();
  std::uint8_t* const marks = marks_.data();
  const std::int32_t before = slot.FirstElement - 1;
  for (std::size_t at = 0; at < size; ++at, bytes += length, element += positions) {
    const std::uint32_t place = PlaceIn<kWidth>(bytes);
    const std::int32_t index = place == 0 ? 0 : static_cast<std::int32_t>(place) + before;
    element->value = index;
    measure[at] += elements[index].SignedMeasure;
    marks[at] |= static_cast<std::uint8_t>(elements[index].Mark);
  }
}

void BlockReader::Settle(ObservationBlock& block) const {
  for (std::size_t at = 0; at < block.Size; ++at) {
    if ((marks_[at] & kUncommon) != 0) {
      Reckon(block, at);
      continue;
    }
    ReadStatus& status = block.Status[at];
    status = block.CellOf(at).Top < 1 ? ReadStatus::CategoryNotInUse : ReadStatus::Usable;
    if (marks_[at] == 0) {
      if (TakesPart(status)) status = ReadStatus::NothingMeasurable;
    } else if (block.Ordinal[at] < 0) {
      status = ReadStatus::CategoryNotInUse;
    }
  }
}

// Elements that are extreme, not in use, weighted or compared with themselves are met one by one.
void BlockReader::Reckon(ObservationBlock& block, std::size_t at) const {
  const CellFacts& cell = block.CellOf(at);
  ElementIndex* const row = block.Row(at);
  if (cell.Negatives != nullptr) CancelOpposites(cell, row, positions_);
  float& weight = block.Weight[at];
  float& measure = block.Measure[at];
  ReadStatus& status = block.Status[at];
  measure = 0;
  status = cell.Top < 1 ? ReadStatus::CategoryNotInUse : ReadStatus::Usable;
  bool measurable = false;
  float sum = 0;
  for (std::size_t position = positions_; position-- > 0;) {
    const ElementIndex element = row[position];
    if (element == kNoElement) continue;
    const ElementFacts& own = facts_.Element(element);
    if (Measurable(own.Status)) {
      measurable = true;
    } else if (WithoutMeasure(own.Status)) {
      status = ReadStatus::ElementNotInUse;
      return;
    } else if (status == ReadStatus::Usable) {
      status = ReadStatus::OneExtreme;
    } else if (status == ReadStatus::OneExtreme) {
      status = ReadStatus::SeveralExtreme;
    }
    sum += cell.Negative(position) ? -own.SignedMeasure : own.SignedMeasure;
    if (elements_.WeightsUsed) weight *= elements_.ElementStats[element].ElementWeight;
  }
  measure = sum;
  if (!measurable) {
    if (TakesPart(status)) status = ReadStatus::NothingMeasurable;
  } else if (block.Ordinal[at] < 0) {
    status = ReadStatus::CategoryNotInUse;
  }
}

// An element compared with itself says nothing: two positions of opposite sign that hold it cancel out.
void BlockReader::CancelOpposites(const CellFacts& cell, ElementIndex* row, std::size_t positions) {
  for (std::size_t at = positions; at-- > 1;) {
    for (std::size_t before = 0; before < at; ++before) {
      if (row[at] == kNoElement || row[at] != row[before] || cell.Negative(at) == cell.Negative(before)) continue;
      row[at] = kNoElement;
      row[before] = kNoElement;
    }
  }
}

}  // namespace tessaly
