#include "data/model_cells.h"

#include <algorithm>

#include "spec/scale_code.h"
#include "support/failure.h"

namespace tessaly {
namespace {

constexpr ScaleNumber kNoScale{-1};
/// Most categories of all scales together: each takes about 100 bytes.
constexpr std::int64_t kMostScaleCategories = 20'000'000;

/// The scale of `statement` as its code says. Codes have been tested when statements and definitions were matched.
Scale DeclaredScale(const ModelStatement& statement) {
  const ScaleCode code = ParseScaleCode(statement.ModelField[0]).value_or(ScaleCode{});
  Scale scale;
  scale.ScaleTopCategory = static_cast<std::int16_t>(code.Top);
  scale.ScaleDichotomyCut = static_cast<std::int16_t>(code.DichotomyCut);
  return scale;
}

}  // namespace

ModelCells::ModelCells(ModelTables& models, ScaleTables& scales, ElementTable& elements)
    : models_(models),
      scales_(scales),
      elements_(elements),
      hashPositions_(models.Statements.size()),
      sharedScale_(models.Definitions.size(), kNoScale) {
  for (const StatementNumber number : models.Statements.all()) {
    const ModelStatement& statement = models.Statements[number];
    positions_ = static_cast<std::size_t>(statement.ModelLow.size());
    for (const PositionNumber position : statement.ModelLow.all())
      if (statement.ModelHasHash && statement.IsHash(position))
        hashPositions_[number].push_back(static_cast<std::size_t>(position.value - 1));
  }
  scales_.CategoryRawCount.Create(0, scales.RawCategoryLimit + 1);
}

void ModelCells::MakeInitialCells() {
  const std::vector<ElementIndex> none(positions_, kNoElement);
  for (const StatementNumber number : models_.Statements.all()) {
    const ModelStatement& statement = models_.Statements[number];
    if (!statement.ModelHasHash && statement.ModelType != ModelType::Missing) MakeCell(number, none.data());
  }
}

CellNumber ModelCells::CellFor(StatementNumber statement, const ElementIndex* elements) {
  const CellNumber first = models_.Statements[statement].ModelFirstCell;
  if (first == kNoCell) return MakeCell(statement, elements);
  if (hashPositions_[statement].empty()) return first;
  // Most elements of a `#` position have one cell.
  const ElementIndex element = elements[hashPositions_[statement].front()];
  if (element != kNoElement) {
    const CellNumber cell = elements_.ElementModel[element];
    if (cell.value >= 0 && HasElements(cell, statement, elements)) return cell;
  }
  const auto [begin, end] = cellsByElements_.equal_range(Hash(statement, elements));
  const auto found =
      std::find_if(begin, end, [&](const auto& entry) { return HasElements(entry.second, statement, elements); });
  return found != end ? found->second : MakeCell(statement, elements);
}

CellNumber ModelCells::MakeCell(StatementNumber statement, const ElementIndex* elements) {
  const ScaleNumber scale = ScaleFor(statement);
  const CellNumber cell = models_.Cells.add({scale, statement});
  scales_.Scales[scale].ScaleCell = cell;
  CellNumber& firstCell = models_.Statements[statement].ModelFirstCell;
  firstCell = firstCell == kNoCell ? cell : kSeveralCells;

  const std::size_t vectorStart = models_.CellElements.size();
  models_.CellElements.resize(vectorStart + positions_, kNoElement);
  if (hashPositions_[statement].empty()) return cell;
  for (const std::size_t at : hashPositions_[statement]) {
    const ElementIndex element = elements[at];
    models_.CellElements[vectorStart + at] = element;
    if (element == kNoElement) continue;
    CellNumber& ofElement = elements_.ElementModel[element];
    ofElement = ofElement == kNoCell || ofElement == cell ? cell : kSeveralCells;
  }
  cellsByElements_.emplace(Hash(statement, elements), cell);
  return cell;
}

ScaleNumber ModelCells::ScaleFor(StatementNumber number) {
  const ModelStatement& statement = models_.Statements[number];
  const DefinitionNumber definition = statement.ModelDefinition;
  const bool shared = definition != kNoDefinition && !models_.Definitions[definition].Specific;
  if (!shared || statement.ModelHasHash) return MakeScale(number);
  if (sharedScale_[definition] == kNoScale) sharedScale_[definition] = MakeScale(number);
  return sharedScale_[definition];
}

ScaleNumber ModelCells::MakeScale(StatementNumber number) {
  Scale scale = DeclaredScale(models_.Statements[number]);
  scale.ScaleModel = number;
  if (std::int64_t{scales_.ScaleCount() + 1} * scales_.CategoryRawCount.Categories() > kMostScaleCategories)
    throw Halt{FailureCode::TooManyModels,
               "There are more than 20,000,000 categories of scales: too many elements have a "
               "scale of their own (#)"};
  scales_.CategoryRawCount.AddScale();
  return scales_.Scales.add(scale);
}

bool ModelCells::HasElements(CellNumber cell, StatementNumber statement, const ElementIndex* elements) const {
  if (models_.Cells[cell].CellModel != statement) return false;
  const ElementIndex* const ofCell = models_.CellElements.data() + static_cast<std::size_t>(cell.value) * positions_;
  const auto& hashPositions = hashPositions_[statement];
  return std::all_of(hashPositions.begin(), hashPositions.end(),
                     [&](std::size_t at) { return ofCell[at] == elements[at]; });
}

std::uint64_t ModelCells::Hash(StatementNumber statement, const ElementIndex* elements) const {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;
  auto hash = static_cast<std::uint64_t>(statement.value);
  for (const std::size_t at : hashPositions_[statement])
    hash = (hash ^ static_cast<std::uint64_t>(elements[at].value)) * kMultiplier + (hash >> 29);
  return hash;
}

}  // namespace tessaly
