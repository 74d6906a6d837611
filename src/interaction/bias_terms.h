// What a bias run gives: one term for each combination of elements of its facets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "estimate/data_fit.h"
#include "state/elements.h"
#include "state/facets.h"

namespace tessaly {

/// How the size of a term came about.
enum class BiasFlag : std::int8_t {
  NotEstimable = 0,
  Ordinary = 1,
  /// The observed score was 0 and was moved up.
  Minimum = 2,
  /// The observed score was perfect and was moved down.
  Maximum = 3,
};

/// What stands behind the size of a term in tables.
constexpr char MarkOf(BiasFlag flag) {
  return flag == BiasFlag::Maximum ? '<' : flag == BiasFlag::Minimum ? '>' : ' ';
}

/// One bias term. Scores are weighted sums over the term's responses.
struct BiasTerm {
  BiasFlag Flag = BiasFlag::NotEstimable;
  /// Logit: how much higher the term's net measure is than its elements say. Reports give it the sign of `Bias=`.
  float BiasSize = 0;
  /// Ordinal score, moved inward if it is extreme.
  float ObservedSum = 0;
  /// Raw responses, and what the main analysis expects of them.
  float RawSum = 0;
  float ExpectedRawSum = 0;
  float CountSum = 0;
  /// Logit.
  float StandardError = 0;
  /// Size / error, held at 99.99.
  float TStatistic = 0;
  float InfitMeanSquare = 1;
  float OutfitMeanSquare = 1;

  bool Estimable() const { return Flag != BiasFlag::NotEstimable; }
  /// Mean residual per response before the term was estimated; a count of 0 counts as 1.
  float ObservedMinusExpected() const { return (RawSum - ExpectedRawSum) / (CountSum == 0 ? 1.0F : CountSum); }
  /// Degrees of freedom of t.
  std::int64_t Freedom() const;
};

/// The element of one bias facet in a term's key: (key / Divisor) modulo Count.
struct BiasPosition {
  FacetNumber BiasFacet{0};
  ElementIndex FirstElement{0};
  std::int64_t Count = 0;
  std::int64_t Divisor = 1;
};

/// Whether 63 bits number all combinations of the elements of `facets`.
bool CombinationsCanBeNumbered(const std::vector<FacetNumber>& facets, const FacetTable& table);

/// The bias facets, ascending, and the terms, ascending by key. The first facet's elements vary fastest.
class BiasTerms {
 public:
  /// The positions of `facets`, whose elements' combinations must be numberable.
  BiasTerms(const std::vector<FacetNumber>& facets, const FacetTable& table);

  const std::vector<BiasPosition>& Positions() const { return positions_; }
  /// "1. Person, 3. Task".
  const std::string& Label() const { return label_; }

  /// The element of bias facet `position` (from 0) in a term.
  ElementIndex Element(TermIndex term, std::size_t position) const {
    return ElementOf(BiasKey[term], positions_[position]);
  }
  static ElementIndex ElementOf(std::int64_t key, const BiasPosition& position) {
    return position.FirstElement + static_cast<std::int32_t>(key / position.Divisor % position.Count);
  }

  Table<TermIndex, std::int64_t> BiasKey;
  Table<TermIndex, BiasTerm> Terms;
  /// Fit of the responses with the terms in the model.
  DataFit Fit;

 private:
  std::vector<BiasPosition> positions_;
  std::string label_;
};

}  // namespace tessaly
