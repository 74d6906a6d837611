#include "output/response_matrix.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "support/failure.h"
#include "support/number_text.h"

namespace tessaly {

namespace {

/// Two bytes each.
constexpr std::int64_t kMostCells = std::int64_t{1} << 30;
constexpr std::int64_t kMostIndexed = std::int64_t{1} << 62;
constexpr std::int32_t kHighestResponse = std::numeric_limits<std::int16_t>::max() - 1;

[[noreturn]] void RefuseMatrix(const std::string& why) {
  throw Halt{FailureCode::IncompatibleFile, why + ". Please choose other facets for rows and columns"};
}

}  // namespace

MatrixSide::MatrixSide(const std::vector<FacetNumber>& facets, const Analysis& analysis) {
  std::int64_t combinations = 1;
  for (const FacetNumber number : facets) {
    const Facet& facet = analysis.Facets[number];
    Digit digit{facet.FacetFirstElement.value, std::max<std::int64_t>(facet.FacetElementCount, 1), {}};
    for (std::int32_t p = analysis.Fields.ActiveFacetCount(); p >= 1; --p)
      if (analysis.Fields.Positions[{p}].PositionFacet == number)
        digit.Places.push_back(static_cast<std::size_t>(p - 1));
    if (combinations > kMostIndexed / digit.Elements)
      RefuseMatrix("the elements of these facets have too many combinations");
    combinations *= digit.Elements;
    digits_.push_back(std::move(digit));
  }
}

std::int64_t MatrixSide::KeyOf(const Observation& obs) const {
  std::int64_t key = 0;
  for (const Digit& digit : digits_) {
    const auto place = std::find_if(digit.Places.begin(), digit.Places.end(),
                                    [&](std::size_t at) { return obs.Elements[at].CurrentElement.value > 0; });
    if (place == digit.Places.end()) return -1;
    key = key * digit.Elements + (obs.Elements[*place].CurrentElement.value - digit.FirstElement);
  }
  return key;
}

std::int32_t MatrixSide::NumberOf(const Observation& obs) const {
  const std::int64_t key = KeyOf(obs);
  return key < 0 ? 0 : numbers_.Find(key).value;
}

std::vector<ElementIndex> MatrixSide::Elements(std::int32_t number) const {
  std::int64_t key = keys_[static_cast<std::size_t>(number - 1)];
  std::vector<ElementIndex> elements(digits_.size());
  for (std::size_t at = digits_.size(); at-- > 0; key /= digits_[at].Elements)
    elements[at] = {digits_[at].FirstElement + static_cast<std::int32_t>(key % digits_[at].Elements)};
  return elements;
}

ResponseMatrix::ResponseMatrix(const std::vector<FacetNumber>& rows, const std::vector<FacetNumber>& columns,
                               RepeatRule rule, const Analysis& analysis, ObservationStore& store, RunControl& control,
                               Console& console)
    : rows_(rows, analysis), columns_(columns, analysis) {
  for (const Observation& obs : ObservationPass(store, analysis, control, console)) {
    if (!rows_.Holds(obs) || !columns_.Holds(obs)) continue;
    rows_.Meet(obs);
    columns_.Meet(obs);
  }
  CreateCells();
  for (const Observation& obs : ObservationPass(store, analysis, control, console)) {
    const std::int32_t row = rows_.NumberOf(obs);
    const std::int32_t column = columns_.NumberOf(obs);
    if (row > 0 && column > 0) Put(cells_[PlaceOf(row, column)], obs.ObsResponse, rule);
  }
  bool any = false;
  for (const std::int16_t cell : cells_) {
    if (cell == 0) continue;
    low_ = any ? std::min(low_, cell - 1) : cell - 1;
    high_ = std::max(high_, cell - 1);
    any = true;
  }
}

void ResponseMatrix::CreateCells() {
  rows_.Number();
  columns_.Number();
  const std::string size = "a matrix of " + BareText(rows_.Size()) + " rows and " + BareText(columns_.Size());
  const std::int64_t count = std::int64_t{rows_.Size()} * columns_.Size();
  if (count > kMostCells) RefuseMatrix(size + " columns is too large");
  try {
    cells_.resize(static_cast<std::size_t>(count));
  } catch (const std::bad_alloc&) {
    RefuseMatrix(size + " columns does not fit into memory");
  }
}

void ResponseMatrix::Put(std::int16_t& cell, std::int32_t response, RepeatRule rule) {
  std::int32_t value = response + 1;
  if (cell != 0) {
    repeats_ = true;
    if (rule == RepeatRule::Sum) {
      value = cell + response;
    } else if (rule != RepeatRule::Last) {
      return;
    }
  }
  if (value - 1 > kHighestResponse)
    RefuseMatrix("the responses of a cell add up to more than " + BareText(kHighestResponse));
  cell = static_cast<std::int16_t>(value);
}

std::optional<std::int32_t> ResponseMatrix::At(std::int32_t row, std::int32_t column) const {
  const std::int16_t cell = cells_[PlaceOf(row, column)];
  if (cell == 0) return {};
  return cell - 1;
}

}  // namespace tessaly
