#include "data/model_cells.h"

#include <algorithm>
#include <string_view>

#include "support/bytes.h"
#include "support/number_text.h"

namespace tessaly {
namespace {

constexpr ScaleNumber kNoScale{-1};
constexpr std::int16_t kHighestCategory = 255;
constexpr std::int16_t kUsualTop = 9;

/// Letter and number of a scale code such as "R5"; the number is 0 if there is none.
struct ScaleCode {
  char Letter = ' ';
  std::int16_t Number = 0;
};

ScaleCode CodeOf(const ModelStatement& statement) {
  const std::string_view code = TrimBlanks(statement.ModelField[0]);
  if (code.empty()) return {};
  const double number = std::clamp(LeadingNumber(code.substr(1)), 0.0, double(kHighestCategory));
  return {UpperAscii(code[0]), static_cast<std::int16_t>(number)};
}

std::int16_t TopCategory(ModelType type, const ScaleCode& code) {
  switch (type) {
    case ModelType::RatingScale:
      return code.Number > 0 ? code.Number : kUsualTop;
    case ModelType::Binomial:
      return code.Letter == 'D' ? std::int16_t{1} : std::max(code.Number, std::int16_t{1});
    case ModelType::Poisson:
      return kHighestCategory;
    case ModelType::Missing:
      break;
  }
  return 0;
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
    scales.RawCategoryLimit = std::max(scales.RawCategoryLimit, TopCategory(statement.ModelType, CodeOf(statement)));
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
  const ModelStatement& statement = models_.Statements[number];
  const ScaleCode code = CodeOf(statement);
  Scale scale;
  scale.ScaleTopCategory = TopCategory(statement.ModelType, code);
  if (statement.ModelType == ModelType::Binomial && code.Letter == 'D') scale.ScaleDichotomyCut = code.Number;
  scale.ScaleModel = number;
  if (statement.ModelType == ModelType::Poisson) scales_.PoissonUsed = true;
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
