// The rows of a table of pairs of bias terms.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "interaction/bias_pairs.h"
#include "state/analysis.h"

namespace tessaly {

/// The lines of the pairs that differ in one bias facet, all of one width: the elements that a pair shares, their
/// measure in either context, and the contrast.
class BiasPairRows {
 public:
  /// `position` (from 0) is the bias facet in whose element the terms of a pair differ.
  BiasPairRows(const BiasTerms& terms, const Analysis& analysis, std::size_t position);

  const BiasContrasts& Contrasts() const { return contrasts_; }
  /// The column headings, and the template of the rules.
  const std::vector<std::string>& HeadLines() const { return headLines_; }
  const std::string& RuleTemplate() const { return ruleTemplate_; }
  std::string Line(TermIndex first, TermIndex second) const;

 private:
  void BuildHeadings();
  const tessaly::Facet& Facet(std::size_t position) const;
  /// Number and label of the element of a term, as wide as its column.
  std::string Cell(TermIndex term, std::size_t position) const;
  /// A term's side of the row.
  std::string Side(TermIndex term, float measure) const;
  std::string Contrast(TermIndex first, TermIndex second, const BiasContrast& contrast) const;

  const BiasTerms& terms_;
  const Analysis& analysis_;
  const Settings& settings_;
  std::size_t position_;
  BiasContrasts contrasts_;
  /// Of the element cells, by position.
  std::vector<int> widths_;
  std::vector<std::string> headLines_;
  std::string ruleTemplate_;
};

}  // namespace tessaly
