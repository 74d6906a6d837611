#include "output/crossed_combinations.h"

#include <algorithm>

#include "data/observation_pass.h"
#include "support/failure.h"

namespace tessaly {

namespace {

constexpr std::int64_t kMostCombinations = 100'000'000;
constexpr std::int64_t kPollEvery = 100;

PositionNumber PositionAt(std::size_t at) {
  return {static_cast<std::int32_t>(at) + 1};
}

}  // namespace

CrossedCombinations::CrossedCombinations(PositionNumber fastest, const Analysis& analysis, ObservationStore& store,
                                         RunControl& control, Console& console)
    : analysis_(analysis),
      control_(control),
      matcher_(analysis.Models.Statements),
      choices_(static_cast<std::size_t>(analysis.Fields.ActiveFacetCount())),
      at_(choices_.size()),
      elements_(choices_.size()),
      numbers_(choices_.size()) {
  for (std::size_t p = 0; p < choices_.size(); ++p)
    if (PositionAt(p) != fastest) order_.push_back(p);
  if (fastest.value > 0) order_.push_back(static_cast<std::size_t>(fastest.value - 1));
  FindDerivations();
  CollectElements(store, console);
  LimitCount();
  NumberCells();
}

void CrossedCombinations::FindDerivations() {
  const FieldMap& fields = analysis_.Fields;
  for (const DataColumn& column : fields.Columns) {
    if (!column.Derived() || column.ColumnPosition.value == 0 || !fields.Columns.holds(column.DvalueSource)) continue;
    const PositionNumber source = fields.Columns[column.DvalueSource].ColumnPosition;
    if (source.value == 0) continue;
    derivations_.push_back(
        {static_cast<std::size_t>(column.ColumnPosition.value - 1), static_cast<std::size_t>(source.value - 1), {}});
  }
}

void CrossedCombinations::CollectElements(ObservationStore& store, Console& console) {
  std::vector<std::vector<char>> held(choices_.size());
  const auto facetOf = [&](std::size_t p) -> const Facet& {
    return analysis_.Facets[analysis_.Fields.Positions[PositionAt(p)].PositionFacet];
  };
  for (std::size_t p = 0; p < held.size(); ++p)
    held[p].resize(static_cast<std::size_t>(std::max(facetOf(p).FacetElementCount, 0)) + 1);

  for (const Observation& obs : ObservationPass(store, analysis_, control_, console)) {
    if (!TakesPart(obs.Status)) continue;
    store.Read(obs.ObservationIndex, elements_.data());
    for (std::size_t p = 0; p < held.size(); ++p) {
      const ElementIndex element = elements_[p];
      const std::int32_t place = element == kNoElement ? 0 : element.value - facetOf(p).FacetFirstElement.value + 1;
      held[p][static_cast<std::size_t>(place)] = 1;
    }
    for (Derivation& derivation : derivations_)
      if (elements_[derivation.Position] != kNoElement)
        derivation.Derived[elements_[derivation.Source]] = elements_[derivation.Position];
  }
  for (std::size_t p = 0; p < held.size(); ++p) {
    if (held[p][0] != 0) choices_[p].push_back(kNoElement);
    for (const ElementIndex element : facetOf(p).Elements())
      if (held[p][static_cast<std::size_t>(element.value - facetOf(p).FacetFirstElement.value) + 1] != 0)
        choices_[p].push_back(element);
  }
}

void CrossedCombinations::LimitCount() const {
  std::int64_t count = 1;
  for (const std::vector<ElementIndex>& choices : choices_) {
    count *= static_cast<std::int64_t>(choices.size());
    if (count > kMostCombinations)
      throw Halt{FailureCode::IncompatibleFile, "fully-crossed data of more than 100,000,000 lines"};
    if (count == 0) return;
  }
}

void CrossedCombinations::NumberCells() {
  const ModelTables& models = analysis_.Models;
  for (const CellNumber cell : models.Cells.all()) {
    std::vector<std::int32_t> key{models.Cells[cell].CellModel.value};
    const std::size_t start = static_cast<std::size_t>(cell.value) * choices_.size();
    for (std::size_t p = 0; p < choices_.size(); ++p) key.push_back(models.CellElements[start + p].value);
    cells_.emplace(std::move(key), cell);
  }
}

std::optional<Combination> CrossedCombinations::Next() {
  while (Advance()) {
    if (tried_ % kPollEvery == 0) control_.Poll();
    if (const std::optional<Combination> combination = Match()) return combination;
  }
  return {};
}

bool CrossedCombinations::Advance() {
  if (tried_ == 0) {
    if (std::any_of(choices_.begin(), choices_.end(), [](const auto& choices) { return choices.empty(); }))
      return false;
  } else {
    std::size_t digit = order_.size();
    while (digit-- > 0) {
      const std::size_t p = order_[digit];
      if (++at_[p] < choices_[p].size()) break;
      at_[p] = 0;
      if (digit == 0) return false;
    }
  }
  ++tried_;
  for (std::size_t p = 0; p < choices_.size(); ++p) {
    elements_[p] = choices_[p][at_[p]];
    numbers_[p] =
        elements_[p] == kNoElement ? analysis_.Settings.NullElement : analysis_.Elements.ElementNumber[elements_[p]];
  }
  return true;
}

std::optional<Combination> CrossedCombinations::Match() {
  const StatementNumber number = matcher_.First(numbers_.data());
  if (number == kNoStatement) return {};
  const ModelStatement& statement = analysis_.Models.Statements[number];
  if (statement.ModelType == ModelType::Missing || !Consistent(statement)) return {};
  const CellNumber cell = CellOf(number);
  if (cell == kNoCell) return {};
  Combination combination{elements_.data(), number, analysis_.Models.Cells[cell].CellScale, 0};
  if (analysis_.Scales.Scales[combination.Scale].ScaleTopCategory < 1) return {};
  for (std::size_t p = choices_.size(); p-- > 0;) {
    if (elements_[p] == kNoElement || !statement.UsesElement(PositionAt(p))) continue;
    const bool added = analysis_.Facets[analysis_.Fields.Positions[PositionAt(p)].PositionFacet].FacetPositive;
    const float measure = analysis_.Elements.ElementMeasure[elements_[p]];
    combination.MeasureSum += added != statement.Negative(PositionAt(p)) ? measure : -measure;
  }
  return combination;
}

bool CrossedCombinations::Consistent(const ModelStatement& statement) const {
  for (std::size_t p = 0; p < choices_.size(); ++p) {
    const bool none = elements_[p] == kNoElement;
    if (choices_[p].size() > 1 && none == statement.UsesElement(PositionAt(p))) return false;
    if (!none && std::find(elements_.begin(), elements_.begin() + static_cast<std::ptrdiff_t>(p), elements_[p]) !=
                     elements_.begin() + static_cast<std::ptrdiff_t>(p))
      return false;
  }
  return std::all_of(derivations_.begin(), derivations_.end(), [&](const Derivation& derivation) {
    if (elements_[derivation.Position] == kNoElement) return true;
    const auto derived = derivation.Derived.find(elements_[derivation.Source]);
    return derived != derivation.Derived.end() && derived->second == elements_[derivation.Position];
  });
}

/// `kNoCell` if the elements of `#` positions never met.
CellNumber CrossedCombinations::CellOf(StatementNumber number) {
  const ModelStatement& statement = analysis_.Models.Statements[number];
  if (!statement.ModelHasHash) return statement.ModelFirstCell;
  cellKey_.assign(1, number.value);
  for (std::size_t p = 0; p < choices_.size(); ++p)
    cellKey_.push_back(statement.IsHash(PositionAt(p)) ? elements_[p].value : 0);
  const auto found = cells_.find(cellKey_);
  return found == cells_.end() ? kNoCell : found->second;
}

}  // namespace tessaly
