// Pairs of bias terms that differ in the element of one facet only, and how much they differ.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "interaction/bias_terms.h"
#include "state/analysis.h"

namespace tessaly {

/// The estimable terms, those with all elements but one in common side by side.
class BiasPairGroups {
 public:
  /// `position` (from 0) is the bias facet in whose element the terms of a group differ.
  BiasPairGroups(const BiasTerms& terms, std::size_t position);

  std::size_t GroupCount() const { return starts_.size() - 1; }
  /// The terms of a group (from 0), ascending.
  const TermIndex* begin(std::size_t group) const { return terms_.data() + starts_[group]; }
  const TermIndex* end(std::size_t group) const { return terms_.data() + starts_[group + 1]; }
  std::int64_t PairCount() const;

 private:
  std::vector<TermIndex> terms_;
  /// Where the groups begin, and the end of the last.
  std::vector<std::size_t> starts_;
};

/// How the elements that two terms share measure in the context of each of the elements that they do not. Logits.
struct BiasContrast {
  /// Measure of the shared elements in either context.
  float First = 0;
  float Second = 0;
  /// First less second, its standard error, and their ratio.
  float Difference = 0;
  float StandardError = 0;
  float T = 0;
};

/// Contrasts of the pairs that differ in bias facet `position` (from 0).
class BiasContrasts {
 public:
  BiasContrasts(const BiasTerms& terms, const Analysis& analysis, std::size_t position);

  /// Whether a higher measure of the shared elements goes with higher scores: the orientation of the first of them.
  bool Positive() const { return orientation_ > 0; }
  BiasContrast Of(TermIndex first, TermIndex second) const;

 private:
  const BiasTerms& terms_;
  const Analysis& analysis_;
  std::size_t position_;
  float orientation_;
};

}  // namespace tessaly
